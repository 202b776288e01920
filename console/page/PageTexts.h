// The texts of page.html, page.css and the scripts, which the build makes part of the program.
#pragma once

#include <string_view>

namespace larkspan::console {

extern const std::string_view kPageFrame;
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;
extern const std::string_view kSummaryScript;

}  // namespace larkspan::console
