// Every length in a value was laid out by someone else: what does not lie inside is not written,
// and an element that was begun is closed.
#include "dxl/ItemValue.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "dxl/DateTime.h"
#include "dxl/DxlText.h"
#include "notes/NotesApi.h"
#include "notes/Utf8Text.h"
#include "notes/Values.h"

namespace larkspan {

namespace {

using notes_api::IntlSettings;
using notes_api::TIMEDATE;
using notes_api::WORD;
using tinyxml2::XMLPrinter;

// The library counts bytes of text in 16 bits.
constexpr std::size_t kMaxTextBytes = 0xFFFF;
using TextBuffer = std::array<char, kMaxTextBytes + 1>;

// Views carry this mark in texts that only their display has a use for.
constexpr std::string_view kDisplayMark = "\x7F$0\xFF";

bool HasMark(std::string_view text) { return text.find(kDisplayMark) != text.npos; }

// Copies the text without the marks and returns the number of bytes. A mark that appears only when
// one inside it is removed stays, since the search never goes back.
std::size_t CopyWithoutMarks(std::string_view text, TextBuffer& copy) {
  std::size_t length = 0;
  while (!text.empty()) {
    const bool isMark = text.starts_with(kDisplayMark);
    if (!isMark) copy[length++] = text.front();
    text.remove_prefix(isMark ? kDisplayMark.size() : 1);
  }
  return length;
}

void WriteTranslated(XMLPrinter& printer, std::string_view text) {
  TextBuffer utf8;
  const std::string_view translated = NotesToUtf8(text, std::span(utf8).first(kMaxTextBytes));
  printer.OpenElement("text");
  WriteDxlText(printer, translated.data(), static_cast<std::int32_t>(translated.size()));
  printer.CloseElement();
}

// Most texts have no marks, and need no copy.
void WriteWithoutMarks(XMLPrinter& printer, std::string_view text) {
  TextBuffer copy;
  WriteTranslated(printer, {copy.data(), CopyWithoutMarks(text, copy)});
}

void WriteTextList(XMLPrinter& printer, Bytes value) {
  // The type word, the count and the length of one entry.
  constexpr std::size_t kSmallest = 3 * sizeof(WORD);
  printer.OpenElement("textlist");
  if (value.size() < kSmallest) {
    WriteTextElement(printer, {});
  } else {
    TextList list(value);
    for (std::string_view text; list.Next(text);) WriteTextElement(printer, text);
  }
  printer.CloseElement();
}

void WriteNumber(XMLPrinter& printer, const IntlSettings& numbers, double number) {
  printer.OpenElement("number");
  printer.PushText(NumberToText(number, numbers).c_str());
  printer.CloseElement();
}

// Reads and writes at most `count` elements; ends early with the bytes.
template <typename Element, typename Write>
void WriteElements(ByteReader& data, std::uint16_t count, Write write) {
  Element element{};
  for (std::uint16_t i = 0; i < count && data.Read(element); ++i) write(element);
}

struct RangeCounts {
  WORD list = 0;
  WORD pairs = 0;
};

struct TimePair {
  TIMEDATE lower;
  TIMEDATE upper;
};

void WriteNumberRange(XMLPrinter& printer, const IntlSettings& numbers, ByteReader data) {
  RangeCounts counts;
  data.Read(counts);
  printer.OpenElement("numberlist");
  WriteElements<double>(data, counts.list,
                        [&](double number) { WriteNumber(printer, numbers, number); });
  printer.CloseElement();
}

void WriteTimePair(XMLPrinter& printer, const TimePair& pair) {
  printer.OpenElement("datetimepair");
  WriteDateTime(printer, pair.lower);
  WriteDateTime(printer, pair.upper);
  printer.CloseElement();
}

void WriteTimeRange(XMLPrinter& printer, ByteReader data) {
  RangeCounts counts;
  data.Read(counts);
  printer.OpenElement("datetimelist");
  WriteElements<TIMEDATE>(data, counts.list,
                          [&](const TIMEDATE& time) { WriteDateTime(printer, time); });
  WriteElements<TimePair>(data, counts.pairs,
                          [&](const TimePair& pair) { WriteTimePair(printer, pair); });
  printer.CloseElement();
}

}  // namespace

void WriteTextElement(XMLPrinter& printer, std::string_view text) {
  // The library is always given an address.
  text = text.empty() ? std::string_view("") : text.substr(0, kMaxTextBytes);
  if (HasMark(text)) {
    WriteWithoutMarks(printer, text);
  } else {
    WriteTranslated(printer, text);
  }
}

void WriteItemValue(XMLPrinter& printer, const IntlSettings& numbers, Bytes value) {
  ByteReader data(value);
  WORD type = 0;
  if (!data.Read(type)) return;
  switch (type) {
    case notes_api::kTypeText:
      return WriteTextElement(printer, AsText(data.rest()));
    case notes_api::kTypeTextList:
      return WriteTextList(printer, value);
    case notes_api::kTypeNumber:
      return WriteElements<double>(data, 1,
                                   [&](double number) { WriteNumber(printer, numbers, number); });
    case notes_api::kTypeNumberRange:
      return WriteNumberRange(printer, numbers, data);
    case notes_api::kTypeTime:
      return WriteElements<TIMEDATE>(data, 1,
                                     [&](const TIMEDATE& time) { WriteDateTime(printer, time); });
    case notes_api::kTypeTimeRange:
      return WriteTimeRange(printer, data);
    default:
      return;
  }
}

}  // namespace larkspan
