// Entry points that take values apart: summaries, text lists and numbers.
#include <algorithm>
#include <cctype>
#include <cstring>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/Bytes.h"
#include "standin/Intl.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr std::size_t kWordSize = 2;

bool IsSameIgnoringCase(std::string_view left, std::string_view right) {
  const auto isSame = [](unsigned char one, unsigned char other) {
    return std::tolower(one) == std::tolower(other);
  };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), isSame);
}

// A summary, read no further than the length that it tells.
class SummaryReader {
 public:
  SummaryReader(const Runtime& runtime, const void* summary)
      : bytes_(static_cast<const BYTE*>(summary)) {
    runtime.RequireReadable(bytes_, sizeof(ItemTable));
    length_ = WordAt(bytes_);
    runtime.RequireReadable(bytes_, length_);
  }

  // Null when there is no such item or the summary ends before it does.
  const BYTE* Find(std::string_view name, WORD* valueLength) const {
    std::size_t head = sizeof(ItemTable);
    const std::size_t itemCount = WordAt(bytes_ + kWordSize);
    std::size_t at = head + itemCount * 2 * kWordSize;
    for (std::size_t i = 0; i < itemCount && at <= length_; ++i, head += 2 * kWordSize) {
      const std::size_t nameLength = WordAt(bytes_ + head);
      *valueLength = WordAt(bytes_ + head + kWordSize);
      if (at + nameLength + *valueLength > length_) return nullptr;
      const std::string_view found(reinterpret_cast<const char*>(bytes_ + at), nameLength);
      if (IsSameIgnoringCase(found, name)) return bytes_ + at + nameLength;
      at += nameLength + *valueLength;
    }
    return nullptr;
  }

 private:
  const BYTE* bytes_;
  std::size_t length_;
};

// Where the list begins behind its type word, if it has one. At least its count can be read.
const BYTE* ListStart(const Runtime& runtime, const void* list, BOOL hasTypeWord) {
  const std::size_t typeSize = hasTypeWord != 0 ? kWordSize : 0;
  runtime.RequireReadable(list, typeSize + kWordSize);
  const auto* const bytes = static_cast<const BYTE*>(list);
  Require(hasTypeWord == 0 || WordAt(bytes) == kTypeTextList, "the value is no text list");
  return bytes + typeSize;
}

}  // namespace

BOOL LARKSPAN_NOTES_CALL NSFLocateSummaryValue(ItemTable* summary, const char* name, void** value,
                                               WORD* length, WORD* type) {
  const Call call("NSFLocateSummaryValue", {.item = PeekText(name, kTextSize)});
  if (call.stops()) return 0;
  Require(value != nullptr && length != nullptr && type != nullptr,
          "there is no place for a result");
  const SummaryReader reader(call.runtime(), summary);
  WORD valueLength = 0;
  const BYTE* const found = reader.Find(RequireText(name, kTextSize), &valueLength);
  if (found == nullptr) return 0;
  const bool hasType = valueLength >= kWordSize;
  *type = hasType ? WordAt(found) : WORD{0};
  *length = hasType ? static_cast<WORD>(valueLength - kWordSize) : WORD{0};
  *value = const_cast<BYTE*>(found + (hasType ? kWordSize : 0));
  return 1;
}

WORD LARKSPAN_NOTES_CALL ListGetNumEntries(const void* list, BOOL hasTypeWord) {
  const Call call("ListGetNumEntries");
  if (call.stops()) return 0;
  return WordAt(ListStart(call.runtime(), list, hasTypeWord));
}

STATUS LARKSPAN_NOTES_CALL ListGetText(const void* list, BOOL hasTypeWord, WORD index, char** text,
                                       WORD* length) {
  const Call call("ListGetText");
  if (call.stops()) return call.status();
  Require(text != nullptr && length != nullptr, "there is no place for a result");
  const BYTE* const bytes = ListStart(call.runtime(), list, hasTypeWord);
  const std::size_t count = WordAt(bytes);
  if (index >= count) return kNoSuchListEntry;
  const std::size_t lengths = kWordSize;
  std::size_t at = lengths + count * kWordSize;
  call.runtime().RequireReadable(bytes, at);
  for (std::size_t i = 0; i < index; ++i) at += WordAt(bytes + lengths + i * kWordSize);
  *length = WordAt(bytes + lengths + index * kWordSize);
  call.runtime().RequireReadable(bytes, at + *length);
  *text = reinterpret_cast<char*>(const_cast<BYTE*>(bytes + at));
  return kSuccess;
}

// What the text leaves of its place is filled with garbage, so that nobody relies on a NUL.
STATUS LARKSPAN_NOTES_CALL ConvertFLOATToText(const IntlSettings* settings, const void* format,
                                              const double* number, char* out, WORD size,
                                              WORD* length) {
  const Call call("ConvertFLOATToText");
  if (call.stops()) return call.status();
  Require(settings != nullptr && number != nullptr, "there is nothing to convert");
  Require(format == nullptr, "the format is not zero");
  Require(out != nullptr && length != nullptr, "there is no place for a result");
  double value = 0;
  std::memcpy(&value, number, sizeof value);
  const std::string text = NumberText(value, DecimalSeparator(*settings));
  if (text.size() > size) return kNumberTooLong;
  std::memset(out, kGarbageCharacter, size);
  *length = WriteText(text, out, size);
  return kSuccess;
}

void LARKSPAN_NOTES_CALL OSGetIntlSettings(IntlSettings* settings, WORD size) {
  const Call call("OSGetIntlSettings");
  if (call.stops()) return;
  Require(settings != nullptr, "there is no place for the settings");
  Require(size == sizeof(IntlSettings), "the size is not that of the settings");
  *settings = MakeIntlSettings(call.runtime().decimalSeparator);
}

}  // namespace larkspan::notes_api
