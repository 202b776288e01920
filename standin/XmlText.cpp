#include "standin/XmlText.h"

#include <algorithm>
#include <cstdint>

namespace larkspan::standin {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kNotCharacters[] = {"\xEF\xBF\xBE", "\xEF\xBF\xBF"};
constexpr std::size_t kLineLength = 76;

std::string Escaped(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\'':
      return "&apos;";
    case '\r':
      return "&#13;";
    default:
      break;
  }
  const auto byte = static_cast<unsigned char>(character);
  const bool isControl = byte < 0x20 && character != '\t' && character != '\n';
  return isControl ? std::string(kReplacement) : std::string(1, character);
}

bool IsNotCharacter(std::string_view text) {
  for (const std::string_view unwanted : kNotCharacters) {
    if (text.starts_with(unwanted)) return true;
  }
  return false;
}

std::string Escaped(std::string_view text, std::string_view lineFeed) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsNotCharacter(text.substr(i))) {
      out += kReplacement;
      i += kReplacement.size() - 1;
    } else if (text[i] == '\n') {
      out += lineFeed;
    } else {
      out += Escaped(text[i]);
    }
  }
  return out;
}

}  // namespace

std::string XmlText(std::string_view text) { return Escaped(text, "<break/>"); }

std::string XmlAttribute(std::string_view value) { return "'" + Escaped(value, "&#10;") + "'"; }

std::string XmlComment(std::string_view text) {
  std::string out;
  for (const char character : text) {
    const bool isControl = static_cast<unsigned char>(character) < 0x20;
    if (character == '-' && out.ends_with('-')) out += ' ';
    out += isControl ? ' ' : character;
  }
  if (out.ends_with('-')) out += ' ';
  return out;
}

std::string Base64(const std::vector<notes_api::BYTE>& bytes) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  std::size_t column = 0;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t have = std::min<std::size_t>(3, bytes.size() - i);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) group = group << 8 | (k < have ? bytes[i + k] : 0U);
    for (std::size_t k = 0; k < 4; ++k) {
      out += k <= have ? kDigits[group >> (18 - 6 * k) & 0x3F] : '=';
    }
    column += 4;
    if (column < kLineLength && i + 3 < bytes.size()) continue;
    out += '\n';
    column = 0;
  }
  return out;
}

}  // namespace larkspan::standin
