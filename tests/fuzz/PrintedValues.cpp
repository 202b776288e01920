// What an item value has to give, told from its bytes and the rules for each type.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "notes/NotesApi.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/PrintedXml.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

using Nodes = std::vector<XmlNode>;

constexpr std::size_t kTypeWord = 2;
constexpr std::size_t kRangeHead = 6;  // The type word and two counts.
constexpr std::size_t kElement = 8;    // A number or a date-time.
constexpr std::size_t kPair = 2 * kElement;

std::string WithoutDisplayMarks(std::string_view notes) {
  std::string text(notes);
  for (std::size_t at = 0; at + 4 <= text.size();) {
    if (text.compare(at, 4, "\x7F$0\xFF") == 0) {
      text.erase(at, 4);
    } else {
      ++at;
    }
  }
  return text;
}

std::string Utf8Of(const std::string& notes) {
  constexpr notes_api::WORD kMost = 0xFFFF;
  std::string utf8(kMost, '\0');
  utf8.resize(notes_api::OSTranslate(notes_api::kTranslateNotesToUtf8, notes.data(),
                                     static_cast<notes_api::WORD>(notes.size()), utf8.data(),
                                     kMost));
  return utf8;
}

const XmlNode& OnlyElement(const Nodes& elements, const char* name) {
  Require(elements.size() == 1 && elements[0].name == name, "there is one element of this name");
  return elements[0];
}

void CheckTextElement(const XmlNode& element, std::string_view notes) {
  Require(element.name == "text", "text stands in a text element");
  CheckDxlText(element, Utf8Of(WithoutDisplayMarks(notes)));
}

std::string OnlyCharacters(const XmlNode& element, const char* name) {
  Require(element.name == name && element.children.size() == 1, "the element holds characters");
  return element.children[0].characters;
}

void CheckNumber(const XmlNode& element, Bytes bytes) {
  double expected = 0;
  std::memcpy(&expected, bytes.data(), sizeof expected);
  const std::string text = OnlyCharacters(element, "number");
  const double number = std::strtod(text.c_str(), nullptr);
  Require(number == expected || (std::isnan(number) && std::isnan(expected)),
          "a number comes back from its text");
}

// Digits stand where the pattern has zeros.
bool FitsDigits(std::string_view text, std::string_view pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char character, char wanted) {
                      const bool isDigit = character >= '0' && character <= '9';
                      return wanted == '0' ? isDigit : character == wanted;
                    });
}

void CheckDateTime(const XmlNode& element, Bytes bytes) {
  const bool hasTime = WordIn(bytes, 0) != 0xFFFF || WordIn(bytes, 2) != 0xFFFF;
  const bool hasDate = WordIn(bytes, 4) != 0xFFFF || (WordIn(bytes, 6) & 0xFF) != 0xFF;
  const char* const pattern = !hasDate  ? "T000000,00"
                              : hasTime ? "00000000T000000,00+"
                                        : "00000000";
  std::string text = OnlyCharacters(element, "datetime");
  if (hasDate && hasTime) {
    Require(text.ends_with("+00"), "a full date-time is in universal time");
    text.resize(text.size() - 2);
  }
  Require(FitsDigits(text, pattern), "a date-time has the form that its parts ask for");
}

void CheckTextList(const XmlNode& list, Bytes value) {
  const Nodes texts = ChildElements(list);
  if (value.size() < kRangeHead) return CheckTextElement(OnlyElement(texts, "text"), {});
  const std::size_t count = WordIn(value, kTypeWord);
  const std::size_t lengths = 2 * kTypeWord;
  std::size_t at = lengths + 2 * count;
  std::size_t written = 0;
  for (std::size_t i = 0; i < count && lengths + 2 * (i + 1) <= value.size(); ++i) {
    const std::size_t length = WordIn(value, lengths + 2 * i);
    if (at + length > value.size()) break;
    Require(written < texts.size(), "every entry inside the value is written");
    CheckTextElement(texts[written++], TextIn(value.subspan(at, length)));
    at += length;
  }
  Require(texts.size() == written, "no entry outside the value is written");
}

void CheckNumberRange(const XmlNode& list, Bytes value) {
  const Nodes numbers = ChildElements(list);
  const std::size_t inside = value.size() < kRangeHead ? 0 : (value.size() - kRangeHead) / kElement;
  Require(numbers.size() == std::min(inside, WordIn(value, kTypeWord)),
          "every number inside the value is written");
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    CheckNumber(numbers[i], value.subspan(kRangeHead + i * kElement, kElement));
  }
}

void CheckTimePair(const XmlNode& pair, Bytes bytes) {
  Require(pair.name == "datetimepair", "pairs stand behind single date-times");
  const Nodes both = ChildElements(pair);
  Require(both.size() == 2, "a pair has two date-times");
  CheckDateTime(both[0], bytes.first(kElement));
  CheckDateTime(both[1], bytes.subspan(kElement, kElement));
}

void CheckTimeRange(const XmlNode& list, Bytes value) {
  const Nodes times = ChildElements(list);
  const Bytes data = value.subspan(std::min(kRangeHead, value.size()));
  const bool hasHead = value.size() >= kRangeHead;
  const std::size_t singles =
      hasHead ? std::min(data.size() / kElement, WordIn(value, kTypeWord)) : 0;
  const Bytes behind = data.subspan(singles * kElement);
  const std::size_t pairs =
      hasHead ? std::min(behind.size() / kPair, WordIn(value, 2 * kTypeWord)) : 0;
  Require(times.size() == singles + pairs, "every date-time inside the value is written");
  for (std::size_t i = 0; i < singles; ++i) {
    CheckDateTime(times[i], data.subspan(i * kElement, kElement));
  }
  for (std::size_t i = 0; i < pairs; ++i) {
    CheckTimePair(times[singles + i], behind.subspan(i * kPair, kPair));
  }
}

// Calls the check with the one element, if the bytes hold all that it needs.
template <typename Check>
void CheckSingle(const Nodes& elements, const char* name, Bytes value, Check check) {
  if (value.size() < kTypeWord + kElement) return Require(elements.empty(), "nothing is written");
  check(OnlyElement(elements, name), value.subspan(kTypeWord, kElement));
}

}  // namespace

void CheckText(const XmlNode& element, std::string_view notes) {
  CheckTextElement(OnlyElement(ChildElements(element), "text"), notes);
}

void CheckItemValue(const XmlNode& element, Bytes value) {
  const Nodes elements = ChildElements(element);
  if (value.size() < kTypeWord) return Require(elements.empty(), "no type word, no element");
  switch (WordIn(value, 0)) {
    case notes_api::kTypeText:
      return CheckText(element, TextIn(value.subspan(kTypeWord)));
    case notes_api::kTypeTextList:
      return CheckTextList(OnlyElement(elements, "textlist"), value);
    case notes_api::kTypeNumber:
      return CheckSingle(elements, "number", value, CheckNumber);
    case notes_api::kTypeNumberRange:
      return CheckNumberRange(OnlyElement(elements, "numberlist"), value);
    case notes_api::kTypeTime:
      return CheckSingle(elements, "datetime", value, CheckDateTime);
    case notes_api::kTypeTimeRange:
      return CheckTimeRange(OnlyElement(elements, "datetimelist"), value);
    default:
      return Require(elements.empty(), "a value of another type writes nothing");
  }
}

}  // namespace larkspan::fuzz
