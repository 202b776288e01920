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

enum class AuditNumber {
  kListed,
  kData,
  kDesign,
  kProfile,
  kExported,
  kFailed,
  kProcessed,
  kWarned
};
inline constexpr std::size_t kAuditNumbers = 8;

// What stands before the number in its line, without blanks and colon.
const char* AuditLabel(AuditNumber number);

struct AuditFacts {
  FileReading reading = FileReading::kMissing;
  AuditBlock block;
  bool isBegun = false;        // There is a line with which a block begins.
  bool isClosed = false;       // It has the closing block's first line.
  bool tellsOfLosses = false;  // It ends with the sentence that points to the log.
  std::array<std::optional<std::uint64_t>, kAuditNumbers> numbers;
  std::vector<std::string> faults;  // Sentences: lines that are damaged, doubled or missing.

  std::optional<std::uint64_t> Number(AuditNumber number) const {
    return numbers[static_cast<std::size_t>(number)];
  }
};

AuditFacts ReadAuditFile(const std::wstring& folder);

}  // namespace larkspan::console
