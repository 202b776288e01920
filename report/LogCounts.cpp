#include "report/LogCounts.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "app/Settings.h"
#include "base/File.h"
#include "base/OutputPaths.h"

namespace larkspan {

LoggedCounts CountLoggedDocuments() {
  constexpr std::string_view kFailed = "#WARNING# - Major:";
  constexpr std::string_view kWarning = "#WARNING# - Minor:";
  LoggedCounts counts;
  UniqueFile log = OpenFile(InOutputFolder(output::kLog), L"r");
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
