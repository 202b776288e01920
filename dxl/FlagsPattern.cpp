// One walk over the pattern with three results, since a later group takes up what an earlier one of
// its kind has found.
#include "dxl/FlagsPattern.h"

#include <cstddef>

namespace larkspan {

namespace {

enum class Group { kBefore, kAll, kAny, kNone };

class Matcher {
 public:
  explicit Matcher(std::string_view flags) : flags_(flags) {}

  void OpenAll() {
    all_ = true;
    group_ = Group::kAll;
  }

  void OpenAny(bool nextIsNone) {
    any_ = nextIsNone;
    group_ = Group::kAny;
  }

  void OpenNone() {
    none_ = true;
    group_ = Group::kNone;
  }

  void Letter(char letter) {
    const bool occurs = flags_.find(letter) != std::string_view::npos;
    if (group_ == Group::kAll) all_ = all_ && occurs;
    if (group_ == Group::kAny) any_ = any_ || occurs;
    if (group_ == Group::kNone) none_ = none_ && !occurs;
  }

  bool Matches() const { return all_ && any_ && none_; }

 private:
  std::string_view flags_;
  Group group_ = Group::kBefore;
  bool all_ = true;
  bool any_ = true;
  bool none_ = true;
};

}  // namespace

bool MatchesFlagsPattern(std::string_view flags, std::string_view pattern) {
  Matcher matcher(flags);
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    switch (pattern[i]) {
      case '*':
        matcher.OpenAll();
        break;
      case '+':
        matcher.OpenAny(pattern.substr(i + 1).starts_with('-'));
        break;
      case '-':
        matcher.OpenNone();
        break;
      default:
        matcher.Letter(pattern[i]);
    }
  }
  return matcher.Matches();
}

}  // namespace larkspan
