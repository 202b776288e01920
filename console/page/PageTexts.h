// The texts of page.html, page.css and page.js, which the build makes part of the program.
#pragma once

#include <string_view>

namespace larkspan::console {

extern const std::string_view kPageFrame;
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace larkspan::console
