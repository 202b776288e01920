#include "console/folder/UnidIndex.h"

#include <algorithm>
#include <charconv>

#include "base/OutputPaths.h"
#include "console/folder/HexDigits.h"
#include "console/folder/TextLines.h"

namespace larkspan::console {

namespace {

constexpr std::size_t kIdDigits = 8;

std::optional<UnidLine> ParseLine(const TextLine& line) {
  const bool hasForm = line.isWhole && line.text.size() > kIdDigits && line.text[kIdDigits] == ',';
  if (!hasForm) return std::nullopt;
  const std::optional<std::uint32_t> id = ParseNoteId(line.text.substr(0, kIdDigits));
  const std::optional<Unid> unid = ParseUnid(line.text.substr(kIdDigits + 1));
  if (!id || !unid) return std::nullopt;
  return UnidLine{*id, *unid};
}

}  // namespace

std::optional<Unid> ParseUnid(std::string_view text) {
  constexpr std::size_t kHalf = 16;
  Unid unid{};
  if (text.size() != 2 * kHalf) return std::nullopt;
  for (std::uint64_t& part : unid) {
    const char* const end = text.data() + kHalf;
    const auto [stop, fault] = std::from_chars(text.data(), end, part, 16);
    if (fault != std::errc() || stop != end) return std::nullopt;
    text.remove_prefix(kHalf);
  }
  return unid;
}

const UnidLine* UnidIndex::Find(std::uint32_t id) const {
  const auto line = std::lower_bound(lines.begin(), lines.end(), UnidLine{id, {}});
  return line != lines.end() && line->id == id ? &*line : nullptr;
}

UnidIndex ReadUnidIndex(const std::wstring& folder) {
  UnidIndex index;
  index.reading =
      ReadTextLines(output::Join(folder, output::kUnidIndex), [&](const TextLine& line) {
        const std::optional<UnidLine> parsed = ParseLine(line);
        if (parsed) index.lines.push_back(*parsed);
        if (!parsed && ++index.faultyLines == 1) index.firstFaultyLine = line.number;
      });
  std::sort(index.lines.begin(), index.lines.end());
  index.lines.erase(std::unique(index.lines.begin(), index.lines.end()), index.lines.end());
  return index;
}

}  // namespace larkspan::console
