#include "bench/Content.h"

#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>

namespace larkspan::bench {

namespace {

constexpr std::string_view kHead =
    "<?xml version='1.0' encoding='utf-8'?><document form='Memo'><noteinfo noteid='00000000' "
    "unid='00000000000000000000000000000000'/>\n"
    "<item name='Body'><rawitemdata type='19'>\n";
constexpr std::string_view kTail = "</rawitemdata></item>\n</document>\n";

// Lines as of an attachment, 72 characters each.
std::string Lines(std::size_t bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr std::size_t kLine = 73;
  std::string lines(bytes, '\n');
  for (std::size_t i = 0; i + 1 < bytes; ++i) {
    if (i % kLine != kLine - 1) lines[i] = kDigits[i * 7 % kDigits.size()];
  }
  return lines;
}

// The text between head and tail, in just that many bytes.
std::string Filled(std::string_view head, std::string_view tail, std::size_t bytes) {
  if (bytes < head.size() + tail.size()) {
    std::fprintf(stderr, "A note's chunk has %u bytes at least\n",
                 static_cast<unsigned int>(kHead.size() + kTail.size()));
    std::exit(2);
  }
  return std::string(head) + Lines(bytes - head.size() - tail.size()) + std::string(tail);
}

std::string WithLineEnds(const std::string& text, std::string_view lineEnd) {
  std::string lines;
  for (const char byte : text) {
    if (byte == '\n') {
      lines += lineEnd;
    } else {
      lines += byte;
    }
  }
  return lines;
}

template <typename... Numbers>
std::string Format(const char* format, Numbers... numbers) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), format, numbers...);
  return text.data();
}

}  // namespace

NoteChunks::NoteChunks(std::uint32_t count, std::uint32_t bytes, std::string_view lineEnd)
    : count_(count), first_(WithLineEnds(Filled(kHead, count == 1 ? kTail : "", bytes), lineEnd)) {
  if (count > 2) middle_ = WithLineEnds(Filled("", "", bytes), lineEnd);
  if (count > 1) last_ = WithLineEnds(Filled("", kTail, bytes), lineEnd);
}

// The note ID, and the universal ID, which is the note ID four times.
void NoteChunks::Select(std::uint32_t noteId) {
  static const std::size_t noteIdAt = kHead.find("noteid='") + 8;
  static const std::size_t universalIdAt = kHead.find("unid='") + 6;
  WriteHexDigits(noteId, first_.data() + noteIdAt);
  for (int part = 0; part < 4; ++part) {
    WriteHexDigits(noteId, first_.data() + universalIdAt + 8 * part);
  }
}

std::string_view NoteChunks::operator[](std::uint32_t index) const {
  if (index == 0) return first_;
  return index + 1 == count_ ? last_ : middle_;
}

std::string TextOf(std::uint32_t variant) {
  return Format("Minutes of the meeting of the department, copy %02u", variant);
}

std::string SecondTextOf(std::uint32_t variant) { return Format("Member %02u", variant); }

Moment MomentOf(std::uint32_t variant) {
  const int number = static_cast<int>(variant);
  return {2024, number % 12 + 1, number + 1, number, 3 * number, 2 * number, 5 * number};
}

std::string NumberTextOf(std::uint32_t variant) { return Format("%u.25", 1000 + variant); }

std::string MomentTextOf(std::uint32_t variant) {
  const Moment at = MomentOf(variant);
  return Format("%04d%02d%02dT%02d%02d%02d,%02d+00", at.year, at.month, at.day, at.hour, at.minute,
                at.second, at.hundredth);
}

std::string ListingLine() {
  constexpr std::int64_t kFirstDay = 1721424;
  constexpr std::int64_t kHundredthsPerDay = 8640000;
  const std::int64_t modified = (kDatabaseDay - kFirstDay) * kHundredthsPerDay + kDatabaseTicks;
  const std::string time = std::to_string(modified);
  const std::string size = std::to_string(std::bit_cast<std::int64_t>(kDatabaseBytes));
  return std::string(kDatabasePath) + '\t' + std::string(kDatabaseTitle) + '\t' + time + '\t' +
         time + '\t' + size + '\t' +
         Format("%08X%08X", static_cast<unsigned int>(kDatabaseIdentifier[1]),
                static_cast<unsigned int>(kDatabaseIdentifier[0]));
}

void WriteDigits(std::uint32_t number, char* digits) {
  for (int place = 7; place >= 0; --place, number /= 10) {
    digits[place] = static_cast<char>('0' + number % 10);
  }
}

void WriteHexDigits(std::uint32_t number, char* digits) {
  for (int place = 7; place >= 0; --place, number /= 16) {
    digits[place] = "0123456789ABCDEF"[number % 16];
  }
}

}  // namespace larkspan::bench
