// Which views are exported, by the letters of their "$Flags".
#pragma once

#include <string_view>

namespace larkspan {

// What every view but folders and hidden ones matches, and every folder but hidden ones.
inline constexpr std::string_view kViewPattern = "-FG40n^";
inline constexpr std::string_view kFolderPattern = "(+-04n*F";

// Whether the flags fit a pattern of three kinds of groups: "*" all of these letters, "+" any of
// them, "-" none of them. What stands before the first group does not count. A "+" group with no
// letter fits only when "-" follows it at once.
bool MatchesFlagsPattern(std::string_view flags, std::string_view pattern);

}  // namespace larkspan
