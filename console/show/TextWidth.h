// How many columns of a terminal a text takes, and how to make it shorter. Texts are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::console {

// East Asian wide characters take two columns, combining marks none, all others one.
int ColumnsOf(std::string_view text);

// At most so many columns of it: what is too long has "..." in its middle. Below four columns only
// its beginning is left.
std::string CutInTheMiddle(std::string_view text, int columns);

// At most so many columns of its beginning.
std::string CutAtTheEnd(std::string_view text, int columns);

// With a "?" for each character that would do something to a terminal: control characters, and
// those that turn the direction of writing. Line ends stay.
std::string SafeForTerminal(std::string_view text);

}  // namespace larkspan::console
