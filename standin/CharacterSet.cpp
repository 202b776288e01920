#include "standin/CharacterSet.h"

#include <cstdint>

namespace larkspan::standin {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr unsigned char kLatinEscape = 0x01;
constexpr unsigned char kControlEscape = 0x0F;
constexpr unsigned char kUnitEscape = 0x14;
constexpr unsigned char kZeroLowByte = 0xF6;
constexpr char32_t kControlShift = 0x20;

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool IsItself(char32_t character) {
  return (character >= 0x20 && character <= 0x7F) || character == 0 || character == 0x09 ||
         character == 0x0A || character == 0x0D;
}

unsigned char ByteAt(std::string_view text, std::size_t index) {
  return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

// Takes one value from the front of a text and shortens the text by what it read.
char32_t Take(std::string_view* rest, std::size_t length, char32_t value) {
  rest->remove_prefix(length);
  return value;
}

char32_t TakeUnitEscape(std::string_view* rest) {
  const unsigned char high = ByteAt(*rest, 1);
  const unsigned char low = ByteAt(*rest, 2);
  if (high == 0 || low == 0) return Take(rest, 1, kReplacement);
  if (high == kZeroLowByte) return Take(rest, 3, static_cast<char32_t>(low) << 8);
  return Take(rest, 3, static_cast<char32_t>(high) << 8 | low);
}

char32_t TakeControlEscape(std::string_view* rest) {
  const char32_t shifted = ByteAt(*rest, 1);
  const bool isControl = shifted > kControlShift && shifted < 2 * kControlShift;
  if (!isControl || IsItself(shifted - kControlShift)) return Take(rest, 1, kReplacement);
  return Take(rest, 2, shifted - kControlShift);
}

char32_t TakeNotesUnit(std::string_view* rest) {
  const unsigned char first = ByteAt(*rest, 0);
  const unsigned char second = ByteAt(*rest, 1);
  if (IsItself(first)) return Take(rest, 1, first);
  if (first == kLatinEscape && second >= 0x80) return Take(rest, 2, second);
  if (first == kControlEscape) return TakeControlEscape(rest);
  if (first == kUnitEscape) return TakeUnitEscape(rest);
  return Take(rest, 1, kReplacement);
}

char32_t TakeUtf16Unit(std::string_view* rest) {
  const char32_t unit = ByteAt(*rest, 0) | static_cast<char32_t>(ByteAt(*rest, 1)) << 8;
  return Take(rest, rest->size() < 2 ? rest->size() : 2, unit);
}

// Joins a surrogate pair; an unpaired surrogate stays as it is.
template <char32_t (*TakeUnit)(std::string_view*)>
char32_t TakeCharacter(std::string_view* rest) {
  const char32_t first = TakeUnit(rest);
  if (!IsHighSurrogate(first) || rest->empty()) return first;
  std::string_view ahead = *rest;
  const char32_t second = TakeUnit(&ahead);
  if (!IsLowSurrogate(second)) return first;
  *rest = ahead;
  return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

std::size_t Utf8Length(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

bool IsUtf8Value(char32_t value, std::size_t length) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  return value >= kSmallest[length] && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

char32_t TakeUtf8Character(std::string_view* rest) {
  const unsigned char lead = ByteAt(*rest, 0);
  if (lead < 0x80) return Take(rest, 1, lead);
  const std::size_t length = Utf8Length(lead);
  if (length == 0 || rest->size() < length) return Take(rest, 1, kReplacement);
  char32_t value = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = ByteAt(*rest, i);
    if ((next & 0xC0) != 0x80) return Take(rest, 1, kReplacement);
    value = value << 6 | (next & 0x3FU);
  }
  if (!IsUtf8Value(value, length)) return Take(rest, 1, kReplacement);
  return Take(rest, length, value);
}

void AppendByte(char32_t byte, std::string* out) { out->push_back(static_cast<char>(byte)); }

void AppendNotesUnit(char32_t unit, std::string* out) {
  if (IsItself(unit)) return AppendByte(unit, out);
  if (unit < kControlShift) {
    AppendByte(kControlEscape, out);
    return AppendByte(unit + kControlShift, out);
  }
  if (unit <= 0xFF) {
    AppendByte(kLatinEscape, out);
    return AppendByte(unit, out);
  }
  const bool zeroLow = (unit & 0xFF) == 0;
  AppendByte(kUnitEscape, out);
  AppendByte(zeroLow ? kZeroLowByte : unit >> 8, out);
  AppendByte(zeroLow ? unit >> 8 : unit & 0xFF, out);
}

void AppendUtf16Unit(char32_t unit, std::string* out) {
  AppendByte(unit & 0xFF, out);
  AppendByte(unit >> 8, out);
}

template <void (*AppendUnit)(char32_t, std::string*)>
void AppendCharacter(char32_t character, std::string* out) {
  if (character < 0x10000) return AppendUnit(character, out);
  AppendUnit(0xD800 + ((character - 0x10000) >> 10), out);
  AppendUnit(0xDC00 + ((character - 0x10000) & 0x3FF), out);
}

void AppendUtf8Character(char32_t character, std::string* out) {
  if (IsHighSurrogate(character) || IsLowSurrogate(character)) character = kReplacement;
  if (character < 0x80) return AppendByte(character, out);
  if (character < 0x800) {
    AppendByte(0xC0 | character >> 6, out);
  } else {
    if (character < 0x10000) {
      AppendByte(0xE0 | character >> 12, out);
    } else {
      AppendByte(0xF0 | character >> 18, out);
      AppendByte(0x80 | (character >> 12 & 0x3F), out);
    }
    AppendByte(0x80 | (character >> 6 & 0x3F), out);
  }
  AppendByte(0x80 | (character & 0x3F), out);
}

using Taker = char32_t (*)(std::string_view*);
using Appender = void (*)(char32_t, std::string*);

std::string Translate(std::string_view in, Taker take, Appender append, std::size_t limit) {
  std::string out;
  while (!in.empty()) {
    const std::size_t whole = out.size();
    append(take(&in), &out);
    if (out.size() <= limit) continue;
    out.resize(whole);
    break;
  }
  return out;
}

std::u16string UnitsFromBytes(std::string_view bytes) {
  std::u16string units;
  while (!bytes.empty()) units.push_back(static_cast<char16_t>(TakeUtf16Unit(&bytes)));
  return units;
}

}  // namespace

std::string NotesToUtf16Bytes(std::string_view notes, std::size_t limit) {
  return Translate(notes, TakeCharacter<TakeNotesUnit>, AppendCharacter<AppendUtf16Unit>, limit);
}

std::string Utf16BytesToNotes(std::string_view utf16, std::size_t limit) {
  return Translate(utf16, TakeCharacter<TakeUtf16Unit>, AppendCharacter<AppendNotesUnit>, limit);
}

std::string NotesToUtf8(std::string_view notes, std::size_t limit) {
  return Translate(notes, TakeCharacter<TakeNotesUnit>, AppendUtf8Character, limit);
}

std::string Utf8ToNotes(std::string_view utf8) {
  return Translate(utf8, TakeUtf8Character, AppendCharacter<AppendNotesUnit>, kNoLimit);
}

std::u16string NotesToUtf16(std::string_view notes) {
  return UnitsFromBytes(NotesToUtf16Bytes(notes, kNoLimit));
}

std::u16string Utf8ToUtf16(std::string_view utf8) {
  return UnitsFromBytes(
      Translate(utf8, TakeUtf8Character, AppendCharacter<AppendUtf16Unit>, kNoLimit));
}

std::string Utf16ToUtf8(std::u16string_view utf16) {
  std::string bytes;
  for (const char16_t unit : utf16) AppendUtf16Unit(unit, &bytes);
  return Translate(bytes, TakeCharacter<TakeUtf16Unit>, AppendUtf8Character, kNoLimit);
}

std::string_view FirstWholeCharacters(std::string_view notes, std::size_t limit) {
  std::string_view rest = notes;
  std::size_t whole = 0;
  while (!rest.empty()) {
    TakeCharacter<TakeNotesUnit>(&rest);
    if (notes.size() - rest.size() > limit) break;
    whole = notes.size() - rest.size();
  }
  return notes.substr(0, whole);
}

}  // namespace larkspan::standin
