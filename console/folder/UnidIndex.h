// The universal ID of each note that a worker opened: unidindex.txt.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

using Unid = std::array<std::uint64_t, 2>;

// 32 hexadecimal digits, whatever their case; no value for any other text.
std::optional<Unid> ParseUnid(std::string_view text);

struct UnidLine {
  std::uint32_t id = 0;
  Unid unid{};
  auto operator<=>(const UnidLine&) const = default;
};

struct UnidIndex {
  FileReading reading = FileReading::kMissing;
  std::vector<UnidLine> lines;  // Ascending; equal ones once.
  std::uint64_t faultyLines = 0;
  std::uint64_t firstFaultyLine = 0;

  // The first line of this note; null when it has none.
  const UnidLine* Find(std::uint32_t id) const;
};

UnidIndex ReadUnidIndex(const std::wstring& folder);

}  // namespace larkspan::console
