// Accounts for the export in a folder, whether it is sealed or not. Nothing is written.
#pragma once

#include <optional>
#include <string>

#include "console/account/Account.h"
#include "console/bag/Bag.h"
#include "console/folder/FileProgress.h"

namespace larkspan::console {

struct VerifyWatch {
  FileProgress summing;   // Of a sealed one, the sums of its files are calculated first.
  FileProgress checking;  // The export is accounted for.
};

struct ExportVerdict {
  std::wstring files;  // The folder in which the export's own files lie.

  // Of a sealed one, what is wrong with the bag is among the findings and warnings, their kinds
  // beginning with "bag-", and the files of all findings begin with the payload's "data/".
  Account account;

  std::optional<BagVerdict> bag;  // Of a sealed one.
};

// No value when it was broken off, or when there is nothing to judge: `whyNot` is then a sentence.
// A bag that is not valid is judged even when there is no export in it. Throws std::runtime_error
// when the system cannot calculate sums.
std::optional<ExportVerdict> VerifyExport(const std::wstring& folder, const VerifyWatch& watch,
                                          std::string& whyNot);

// A sentence about the bag of a sealed folder.
std::string SealedText(const BagVerdict& bag);

}  // namespace larkspan::console
