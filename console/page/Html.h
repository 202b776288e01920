// Untrusted text on its way into a page: names and causes can hold anything that a database holds.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace larkspan::console {

// The text with a blank for each tab and line end, and U+FFFD for every other control character,
// for what is no UTF-8, and for code points that a page cannot carry.
std::string CleanText(std::string_view text);

// Clean text as the content of an element, or of an attribute in double quotes.
std::string Html(std::string_view text);

// JSON as the content of a script element that holds data: nothing in it ends the element.
std::string ScriptJson(const nlohmann::json& value);

// At most so many characters of clean text, with an ellipsis where something was cut off.
std::string CutText(const std::string& text, std::size_t characters);

}  // namespace larkspan::console
