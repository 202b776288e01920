#include "console/account/TextSection.h"

#include <algorithm>

#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

constexpr std::size_t kMostOfAKind = 20;

}  // namespace

std::string WithoutControls(std::string text) {
  const auto isControl = [](char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return value < 0x20 || value == 0x7F;
  };
  std::replace_if(text.begin(), text.end(), isControl, '?');
  // U+0080 to U+009F; a terminal may take one of them for the beginning of a sequence.
  for (std::size_t at = text.find('\xC2'); at != text.npos; at = text.find('\xC2', at + 1))
    if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0)
      text.replace(at, 2, "?");
  return text;
}

void Section::Add(const std::string& kind, const std::string& line) {
  Group& group = GroupOf(kind);
  if (group.lines.size() < kMostOfAKind) group.lines.push_back(line);
  ++group.count;
  ++count_;
}

std::string Section::Text(const char* title) const {
  if (count_ == 0) return {};
  std::string text = "\n" + std::string(title) + " (" + GroupedText(count_) + "):\n";
  for (const Group& group : groups_) {
    for (const std::string& line : group.lines) text += "  " + WithoutControls(line) + "\n";
    const std::uint64_t more = group.count - group.lines.size();
    if (more != 0) text += "  and " + GroupedText(more) + " more (--json lists all)\n";
  }
  return text;
}

Section::Group& Section::GroupOf(const std::string& kind) {
  for (Group& group : groups_)
    if (group.kind == kind) return group;
  return groups_.emplace_back(Group{kind, {}, 0});
}

}  // namespace larkspan::console
