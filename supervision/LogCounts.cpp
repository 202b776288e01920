// The lines are counted in pieces of a buffer, as long as the log's own lines are at the most.
#include "supervision/LogCounts.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"

namespace larkspan {

LoggedCounts CountLoggedDocuments(const std::wstring& outputFolder) {
  constexpr std::string_view kFailed = "#WARNING# - Major:";
  constexpr std::string_view kWarning = "#WARNING# - Minor:";
  LoggedCounts counts;
  file_system::UniqueFile log = file_system::Open(output::Join(outputFolder, output::kLog), L"r");
  if (!log) return counts;
  std::array<char, 1023> piece{};  // 1022 bytes and a NUL; a longer line comes in pieces.
  while (std::fgets(piece.data(), static_cast<int>(piece.size()), log.get()) != nullptr) {
    const std::string_view text(piece.data());
    if (text.starts_with(kFailed)) ++counts.failed;
    if (text.starts_with(kWarning)) ++counts.warnings;
  }
  return counts;
}

}  // namespace larkspan
