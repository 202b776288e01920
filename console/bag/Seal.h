// Makes the folder of a finished export a bag, in place.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "console/ExitCode.h"
#include "console/account/Account.h"
#include "console/bag/Bag.h"
#include "console/folder/FileProgress.h"

namespace larkspan::console {

struct SealWatch {
  FileProgress checking;  // The export is accounted for.
  FileProgress summing;   // The sums of its files are calculated.

  // Called before each change to the disk; a test ends the sealing there by an exception.
  std::function<void()> beforeStep;
};

struct SealResult {
  // kWhole or kLosses, as the export itself: it is a bag. kCouldNotRun: nothing was changed.
  // kIncomplete: it is not accounted for, or the sealing broke off and can be taken up again.
  // kStopped: the watch broke it off; it can be taken up again.
  ExitCode code = ExitCode::kCouldNotRun;
  std::string reason;      // One sentence when it is no bag.
  bool wasSealed = false;  // It was a bag before, and was only judged.
  std::uint64_t payloadFiles = 0;
  std::uint64_t payloadBytes = 0;
  std::optional<Account> account;
  std::optional<BagVerdict> bag;  // With wasSealed.
};

// Nothing else may be at work in the folder.
SealResult SealFolder(const std::wstring& folder, const SealWatch& watch);

}  // namespace larkspan::console
