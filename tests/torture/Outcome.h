// What a run over the stand-in library left behind.
#pragma once

#include <map>
#include <string>

#include "tests/support/RunTexts.h"

namespace larkspan::torture {

using testing::CountMessages;
using testing::LinesOf;
using testing::MessageOf;
using testing::NoteIdText;

struct Outcome {
  testing::OutputTree tree;
  Lines log;                            // Without line ends.
  Lines audit;                          // Likewise, with the times masked; of an export.
  std::map<std::string, int> calls;     // Of the library, in the last runtime of this process.
  std::map<std::string, int> leftOpen;  // In the library, at the end of that runtime.
};

// Reads what is in the output folder of a run.
Outcome ReadOutcome(const std::wstring& output);

// The same of a run in this process, with what the library's ledger says; removes the folder.
Outcome TakeOutcome(const std::wstring& output);

}  // namespace larkspan::torture
