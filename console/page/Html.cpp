#include "console/page/Html.h"

#include <nlohmann/json.hpp>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool IsBlank(wchar_t unit) { return unit == L'\t' || unit == L'\n' || unit == L'\r'; }

bool CannotBeShown(wchar_t unit) {
  const bool isControl = unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
  return isControl || unit == 0xFFFE || unit == 0xFFFF;
}

// A byte that continues a character of UTF-8.
bool Continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at))
    text.replace(at, from.size(), to), at += to.size();
}

}  // namespace

std::string CleanText(std::string_view text) {
  std::wstring wide = Utf8ToWide(text);
  for (wchar_t& unit : wide) {
    if (IsBlank(unit)) {
      unit = L' ';
    } else if (CannotBeShown(unit)) {
      unit = kReplacement;
    }
  }
  return WideToUtf8(wide);
}

std::string Html(std::string_view text) {
  std::string html;
  for (const char byte : CleanText(text)) {
    switch (byte) {
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '&':
        html += "&amp;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += byte;
    }
  }
  return html;
}

std::string ScriptJson(const nlohmann::json& value) {
  // These stand in no place but inside of strings, where an escape means the same.
  std::string text = value.dump();
  ReplaceAll(text, "<", "\\u003c");
  ReplaceAll(text, ">", "\\u003e");
  ReplaceAll(text, "&", "\\u0026");
  ReplaceAll(text, "\xE2\x80\xA8", "\\u2028");
  ReplaceAll(text, "\xE2\x80\xA9", "\\u2029");
  return text;
}

std::string CutText(const std::string& text, std::size_t characters) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (Continues(text[at])) continue;
    if (count++ == characters) return text.substr(0, at) + "\xE2\x80\xA6";
  }
  return text;
}

}  // namespace larkspan::console
