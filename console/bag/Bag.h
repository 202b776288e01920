// A folder in the form of RFC 8493: a payload below data/, lists with the sums of its files, and
// what it tells about itself. Plain values, as those of an account.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "console/folder/FileProgress.h"

namespace larkspan::console {

struct BagVerdict {
  std::string version;                  // "1.0", or the last known one of a bag that tells none.
  std::string encoding;                 // Of its lists.
  std::vector<std::string> algorithms;  // Of the lists of its payload: "sha256".
  std::uint64_t payloadFiles = 0;
  std::uint64_t payloadBytes = 0;
  std::vector<Finding> errors;  // Those of docs/console.md; `file` has slashes, "data/a.txt".
  std::vector<Warning> warnings;

  bool IsValid() const { return errors.empty(); }
};

// Judges the bag as the RFC does, every sum included. Nothing is written, and nothing is opened
// that does not lie in the folder. No value when that cannot be listed, or when it was broken off:
// `whyNot` is then a sentence. Throws std::runtime_error when the system cannot calculate sums.
std::optional<BagVerdict> JudgeBag(const std::wstring& folder, const FileProgress& progress,
                                   std::string& whyNot);

// Whether the folder is called a bag: it has a bagit.txt.
bool IsBag(const std::wstring& folder);

// Where the files of an export lie: below data\ when the folder is a bag, else in the folder
// itself.
std::wstring ExportWithin(const std::wstring& folder);

}  // namespace larkspan::console
