// The last block of audit.txt: what the last run in the folder says of itself.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "console/folder/SharedFile.h"

namespace larkspan::console {

// The lines of a block, in their order.
enum class AuditRow {
  kStarted,
  kUser,
  kServer,
  kPath,
  kWithFullAccess,
  kWithoutFullAccess,
  kSizeBefore,
  kSizeAfter,
  kEnded,
  kRuntime,
  kListed,  // From here on numbers, but for the title and the sentence.
  kCountsTitle,
  kData,
  kDesign,
  kProfile,
  kExported,
  kFailed,
  kProcessed,
  kWarned,
  kTellsOfLosses,
};
inline constexpr std::size_t kAuditRows = 20;

// What stands before the value in its line, without blanks and colon.
std::string AuditLabel(AuditRow row);

struct AuditFacts {
  FileReading reading = FileReading::kMissing;
  AuditBlock block;
  bool isBegun = false;        // There is a line with which a block begins.
  bool isClosed = false;       // It has the closing block's first line.
  bool tellsOfLosses = false;  // It ends with the sentence that points to the log.
  std::array<std::optional<std::uint64_t>, kAuditRows> numbers;
  std::vector<std::string> faults;  // Sentences: lines that are damaged, doubled or missing.

  std::optional<std::uint64_t> Number(AuditRow row) const {
    return numbers[static_cast<std::size_t>(row)];
  }
};

AuditFacts ReadAuditFile(const std::wstring& folder);

}  // namespace larkspan::console
