// What the files on the disk tell of the programs and of the Notes library; nothing is started.
#pragma once

#include <string>

#include "console/doctor/Check.h"
#include "console/doctor/DoctorRequest.h"

namespace larkspan::console {

// What the checks of the files found, for those behind them.
struct ProgramFacts {
  std::wstring exporter;  // larkspan.exe, with its whole path; empty: the system does not tell.
  int exporterBits = 0;
  std::uint16_t exporterProcessor = 0;
  std::wstring library;  // nnotes.dll, with its whole path.
};

// larkspan.exe lies beside this program and is of the same version.
CheckFinding CheckExporter(ProgramFacts& facts);

// Which nnotes.dll Windows would load for it, and whether it can.
CheckFinding CheckLibrary(ProgramFacts& facts);

// All names that larkspan.exe needs are among the library's.
CheckFinding CheckNames(const ProgramFacts& facts);

// The file that --notes-ini names, or one beside the library.
CheckFinding CheckConfiguration(const DoctorRequest& request, const ProgramFacts& facts);

}  // namespace larkspan::console
