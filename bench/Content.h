// The content of the bench's databases, as the library hands it over and as it is to be in the
// files. It is made once and repeats itself, so that neither the library nor a floor spends time on
// it. What differs from note to note and from line to line is a number in a fixed place.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace larkspan::bench {

// The chunks of a note: an XML document whose first line says which note it is.
class NoteChunks {
 public:
  // Each is of that many bytes, or of more where line ends have two.
  NoteChunks(std::uint32_t count, std::uint32_t bytes, std::string_view lineEnd);

  // Those of one note, until the next call.
  void Select(std::uint32_t noteId);

  std::string_view operator[](std::uint32_t index) const;
  std::uint32_t count() const { return count_; }

 private:
  std::uint32_t count_;
  std::string first_;
  std::string middle_;
  std::string last_;
};

// The value of a column in an entry: a text, a number, a time and a list of two texts take turns
// from column to column, and in each column so many variants from entry to entry.
inline constexpr std::uint32_t kVariants = 16;

enum class ValueKind { kText, kNumber, kTime, kTextList };

constexpr ValueKind KindOfColumn(std::uint32_t column) {
  return static_cast<ValueKind>(column % 4);
}

// All texts of one kind have the same length.
std::string TextOf(std::uint32_t variant);
std::string SecondTextOf(std::uint32_t variant);

struct Moment {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int hundredth;
};
Moment MomentOf(std::uint32_t variant);

// As a view's file has it.
std::string NumberTextOf(std::uint32_t variant);
std::string MomentTextOf(std::uint32_t variant);

// A database of the directory. Its path has its number in eight digits from that place on.
inline constexpr std::string_view kDatabasePath = "mail\\department\\user00000000.nsf";
inline constexpr std::size_t kDatabasePathDigits = 20;
inline constexpr std::string_view kDatabaseTitle = "Mail of a member of the department";
inline constexpr double kDatabaseBytes = 268435456.0;
inline constexpr std::uint32_t kDatabaseTicks = 4320000;  // Hundredths of a second since midnight.
inline constexpr std::uint32_t kDatabaseDay = 2460311;    // Julian day number.
inline constexpr std::uint32_t kDatabaseIdentifier[2] = {0x0012D687, 0x852587A4};

// A line of scan.txt in which the digits of the path are zeros, without its end.
std::string ListingLine();

// Writes the number in eight digits, decimal or upper-case hexadecimal.
void WriteDigits(std::uint32_t number, char* digits);
void WriteHexDigits(std::uint32_t number, char* digits);

}  // namespace larkspan::bench
