#include "console/show/TextWidth.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>
#include <vector>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// The blocks with characters that Unicode calls wide or full-width, in ascending order. Those of
// pictures have some that are not: a line that is too short harms nothing.
constexpr std::array<Range, 17> kWide = {{{0x1100, 0x115F},
                                          {0x231A, 0x232A},
                                          {0x23E9, 0x23F3},
                                          {0x25FD, 0x27BF},
                                          {0x2B1B, 0x2B55},
                                          {0x2E80, 0x303E},
                                          {0x3041, 0x33FF},
                                          {0x3400, 0x4DBF},
                                          {0x4E00, 0x9FFF},
                                          {0xA000, 0xA4CF},
                                          {0xA960, 0xA97F},
                                          {0xAC00, 0xD7A3},
                                          {0xF900, 0xFAFF},
                                          {0xFE30, 0xFE6F},
                                          {0xFF00, 0xFF60},
                                          {0xFFE0, 0xFFE6},
                                          {0x1F000, 0x3FFFD}}};

// Combining marks, joiners and marks of direction.
constexpr std::array<Range, 15> kZero = {{{0x0300, 0x036F},
                                          {0x0483, 0x0489},
                                          {0x0591, 0x05BD},
                                          {0x0610, 0x061A},
                                          {0x064B, 0x065F},
                                          {0x0E34, 0x0E3A},
                                          {0x0E47, 0x0E4E},
                                          {0x1AB0, 0x1AFF},
                                          {0x1DC0, 0x1DFF},
                                          {0x200B, 0x200F},
                                          {0x20D0, 0x20FF},
                                          {0x302A, 0x302D},
                                          {0x3099, 0x309A},
                                          {0xFE00, 0xFE0F},
                                          {0xFE20, 0xFE2F}}};

// What moves the cursor, rings, or turns the direction of writing for all that follows.
constexpr std::array<Range, 4> kUnsafe = {
    {{0x0000, 0x001F}, {0x007F, 0x009F}, {0x202A, 0x202E}, {0x2066, 0x2069}}};

bool IsIn(std::span<const Range> ranges, char32_t character) {
  return std::any_of(ranges.begin(), ranges.end(), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

int ColumnsOf(char32_t character) {
  if (character < 0x0300) return 1;  // Most are.
  if (IsIn(kZero, character)) return 0;
  return IsIn(kWide, character) ? 2 : 1;
}

// One character in UTF-16.
struct Character {
  std::wstring units;
  char32_t code;
};

std::vector<Character> CharactersOf(std::string_view text) {
  std::vector<Character> characters;
  const std::wstring wide = Utf8ToWide(text);
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t code = wide[i];
    std::size_t units = 1;
    // The conversion makes no half pair.
    if (code >= 0xD800 && code <= 0xDBFF && i + 1 < wide.size()) {
      code = 0x10000 + ((code - 0xD800) << 10) + (wide[i + 1] - 0xDC00U);
      units = 2;
    }
    characters.push_back({wide.substr(i, units), code});
    i += units - 1;
  }
  return characters;
}

// A character with the marks that it carries: what is shown in one place and is not cut.
struct Cluster {
  std::wstring units;
  int columns;
};

std::vector<Cluster> ClustersOf(std::string_view text) {
  std::vector<Cluster> clusters;
  for (const Character& character : CharactersOf(text)) {
    const int columns = ColumnsOf(character.code);
    if (columns == 0 && !clusters.empty())
      clusters.back().units += character.units;
    else
      clusters.push_back({character.units, columns});
  }
  return clusters;
}

int SumOfColumns(const std::vector<Cluster>& clusters) {
  return std::accumulate(clusters.begin(), clusters.end(), 0,
                         [](int sum, const Cluster& cluster) { return sum + cluster.columns; });
}

// The end of those that fit into so many columns.
template <typename Iterator>
Iterator FittingEnd(Iterator from, Iterator to, int columns) {
  for (; from != to && from->columns <= columns; ++from) columns -= from->columns;
  return from;
}

template <typename Iterator>
std::string TextOf(Iterator from, Iterator to) {
  std::wstring wide;
  for (; from != to; ++from) wide += from->units;
  return WideToUtf8(wide);
}

}  // namespace

int ColumnsOf(std::string_view text) { return SumOfColumns(ClustersOf(text)); }

std::string CutInTheMiddle(std::string_view text, int columns) {
  constexpr std::string_view kGap = "...";
  constexpr int kGapColumns = 3;
  const std::vector<Cluster> all = ClustersOf(text);
  if (SumOfColumns(all) <= columns) return std::string(text);
  if (columns <= kGapColumns) return CutAtTheEnd(text, columns);
  // The end of a path tells more than its beginning, so it gets the odd column.
  const int before = (columns - kGapColumns) / 2;
  const int behind = columns - kGapColumns - before;
  const auto head = FittingEnd(all.begin(), all.end(), before);
  const auto tail = FittingEnd(all.rbegin(), all.rend(), behind).base();
  return TextOf(all.begin(), head) + std::string(kGap) + TextOf(tail, all.end());
}

std::string CutAtTheEnd(std::string_view text, int columns) {
  const std::vector<Cluster> all = ClustersOf(text);
  return TextOf(all.begin(), FittingEnd(all.begin(), all.end(), columns));
}

std::string SafeForTerminal(std::string_view text) {
  std::wstring safe;
  for (const Character& character : CharactersOf(text)) {
    const bool stays = character.code == U'\n' || !IsIn(kUnsafe, character.code);
    safe += stays ? character.units : L"?";
  }
  return WideToUtf8(safe);
}

}  // namespace larkspan::console
