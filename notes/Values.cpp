// What the library writes is never trusted beyond the room it was given, and lengths in a list are
// looked at before the library follows them.
#include "notes/Values.h"

#include <algorithm>
#include <array>

namespace larkspan {

namespace {

using notes_api::BOOL;
using notes_api::TIMEDATE;
using notes_api::WORD;

constexpr BOOL kHasTypeWord = 1;

// Head of a list: its type word and the number of its entries. The length of each entry follows,
// one word each, and then the texts.
constexpr std::size_t kListHead = 2 * sizeof(WORD);

}  // namespace

notes_api::IntlSettings GetIntlSettings() {
  notes_api::IntlSettings settings{};
  notes_api::OSGetIntlSettings(&settings, sizeof settings);
  return settings;
}

std::string NumberToText(double number, const notes_api::IntlSettings& settings) {
  std::array<char, 40> text{};
  WORD length = 0;
  notes_api::ConvertFLOATToText(&settings, nullptr, &number, text.data(),
                                static_cast<WORD>(text.size()), &length);
  return std::string(text.data(), std::min<std::size_t>(length, text.size()));
}

CalendarTime ToUniversalTime(const TIMEDATE& time) {
  notes_api::TIME fields{};
  fields.gm = time;
  notes_api::TimeGMToLocalZone(&fields);
  return {fields.year,   fields.month,  fields.day,      fields.hour,
          fields.minute, fields.second, fields.hundredth};
}

std::uint32_t JulianDay(const TIMEDATE& time) { return notes_api::TimeExtractJulianDate(&time); }

std::uint32_t TimeOfDay(const TIMEDATE& time) { return notes_api::TimeExtractTicks(&time); }

TIMEDATE EarliestTime() {
  constexpr WORD kEarliest = 0;
  TIMEDATE time{};
  notes_api::TimeConstant(kEarliest, &time);
  return time;
}

TextList::TextList(Bytes value)
    : value_(value),
      count_(notes_api::ListGetNumEntries(value.data(), kHasTypeWord)),
      lengths_(value.subspan(std::min(kListHead, value.size()))),
      end_(kListHead + count_ * sizeof(WORD)) {}

// The library trusts the lengths of a list, so they are looked at before it is asked.
bool TextList::NextIsInside() {
  WORD length = 0;
  if (index_ >= count_ || !lengths_.Read(length)) return false;
  end_ += length;
  return end_ <= value_.size();
}

bool TextList::Next(std::string_view& text) {
  if (!NextIsInside()) return false;
  char* bytes = nullptr;
  WORD length = 0;
  notes_api::ListGetText(value_.data(), kHasTypeWord, index_++, &bytes, &length);
  text = bytes != nullptr ? std::string_view(bytes, length) : std::string_view();
  return true;
}

}  // namespace larkspan
