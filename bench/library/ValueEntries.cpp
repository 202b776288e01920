// Values: their texts were made before, and the first bytes tell which it is.
#include <array>
#include <cstring>
#include <string>

#include "bench/Content.h"
#include "bench/library/Entries.h"

namespace larkspan::notes_api {

using bench::kSuccess;

namespace {

std::array<std::string, bench::kVariants> MakeNumberTexts() {
  std::array<std::string, bench::kVariants> texts;
  for (std::uint32_t i = 0; i < bench::kVariants; ++i) texts[i] = bench::NumberTextOf(i);
  return texts;
}

std::array<bench::Moment, bench::kVariants> MakeMoments() {
  std::array<bench::Moment, bench::kVariants> moments;
  for (std::uint32_t i = 0; i < bench::kVariants; ++i) moments[i] = bench::MomentOf(i);
  return moments;
}

// What stands behind the lengths of a list with that many entries.
constexpr std::size_t TextsOffset(std::size_t count) { return (2 + count) * sizeof(WORD); }

WORD WordAt(const void* list, std::size_t index) {
  WORD word = 0;
  std::memcpy(&word, static_cast<const char*>(list) + index * sizeof(WORD), sizeof word);
  return word;
}

}  // namespace

WORD LARKSPAN_NOTES_CALL ListGetNumEntries(const void* list, BOOL) { return WordAt(list, 1); }

STATUS LARKSPAN_NOTES_CALL ListGetText(const void* list, BOOL, WORD index, char** text,
                                       WORD* length) {
  std::size_t offset = TextsOffset(WordAt(list, 1));
  for (WORD i = 0; i < index; ++i) offset += WordAt(list, 2 + i);
  *text = const_cast<char*>(static_cast<const char*>(list)) + offset;
  *length = WordAt(list, 2 + index);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL ConvertFLOATToText(const IntlSettings*, const void*,
                                              const double* number, char* out, WORD size,
                                              WORD* length) {
  static const auto texts = MakeNumberTexts();
  const std::string& text = texts[static_cast<std::size_t>(*number)];
  *length = bench::CopyText(text.data(), text.size(), out, size);
  return kSuccess;
}

void LARKSPAN_NOTES_CALL TimeConstant(WORD, TIMEDATE* time) { *time = {}; }

BOOL LARKSPAN_NOTES_CALL TimeGMToLocalZone(TIME* time) {
  static const auto moments = MakeMoments();
  const bench::Moment& at = moments[time->gm.innards[0] % bench::kVariants];
  *time = {at.year,   at.month,     at.day, 0, at.hour, at.minute,
           at.second, at.hundredth, 0,      0, time->gm};
  return 0;
}

BOOL LARKSPAN_NOTES_CALL TimeLocalToGM(TIME* time) {
  time->gm = {};
  return 0;
}

DWORD LARKSPAN_NOTES_CALL TimeExtractJulianDate(const TIMEDATE* time) { return time->innards[1]; }

DWORD LARKSPAN_NOTES_CALL TimeExtractTicks(const TIMEDATE* time) { return time->innards[0]; }

}  // namespace larkspan::notes_api
