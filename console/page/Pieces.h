// What all pages are made of: their frame, the banner of a verdict, and large numbers.
#pragma once

#include <string>
#include <string_view>

#include "console/ExitCode.h"

namespace larkspan::console {

// HTML, but for the texts.
struct PageParts {
  std::string title;    // Text.
  std::string version;  // Text, of this program.
  std::string nonce;    // Marks the page's own style and script: its policy allows no other.
  std::string_view script;
  std::string head;
  std::string facts;
  std::string notices;
  std::string views;
  std::string footer;
};

// The whole page.
std::string FillFrame(const PageParts& parts);

// A verdict in a box, in the colour of its code.
std::string Banner(ExitCode code, const std::string& word, const std::string& sentence);

// A number under its label, one of a list of them. The tone is a class of the style; empty: plain.
std::string Tile(const std::string& label, const std::string& large, const std::string& small,
                 const std::string& tone = "");

// A new nonce that nobody can foresee; empty when the system gives no random bytes.
std::string MakeNonce();

}  // namespace larkspan::console
