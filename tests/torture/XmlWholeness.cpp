#include "tests/torture/XmlWholeness.h"

#include <string_view>
#include <vector>

namespace larkspan::torture {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Walks from tag to tag.
class TagReader {
 public:
  explicit TagReader(std::string_view text) : rest_(text) {}

  bool IsWhole() {
    while (rest_.find('<') != std::string_view::npos) {
      if (!TakeTag()) return false;
    }
    return roots_ == 1 && open_.empty() && rest_.find_first_not_of(kBlanks) == std::string::npos;
  }

 private:
  bool TakeTag() {
    const std::size_t start = rest_.find('<');
    const std::size_t end = rest_.find('>', start);
    if (end == std::string_view::npos) return false;
    const std::string_view tag = rest_.substr(start + 1, end - start - 1);
    rest_.remove_prefix(end + 1);
    if (tag.empty() || tag.front() == '?' || tag.front() == '!') return !tag.empty();
    if (tag.front() == '/') return Close(tag.substr(1));
    if (open_.empty()) ++roots_;
    if (tag.back() != '/') open_.push_back(tag.substr(0, tag.find_first_of(kBlanks)));
    return true;
  }

  bool Close(std::string_view name) {
    if (open_.empty() || open_.back() != name) return false;
    open_.pop_back();
    return true;
  }

  std::string_view rest_;
  std::vector<std::string_view> open_;
  int roots_ = 0;
};

}  // namespace

bool IsWholeXml(const std::string& text) {
  return text.starts_with("<?xml ") && TagReader(text).IsWhole();
}

}  // namespace larkspan::torture
