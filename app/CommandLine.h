// The command line: options into settings. Faults are silent by design, since the run log lives in
// the output folder, which may not be known yet.
#pragma once

#include <string>
#include <vector>

#include "base/Settings.h"

namespace larkspan {

struct ParsedCommandLine {
  bool accepted = true;  // False after -h or -? and after an invalid parameter.
  bool showVersion = false;
  bool hasPassword = false;  // One is given, which may be empty.
  Settings settings;
  std::string fault;  // What an invalid parameter would be called; shown and written nowhere.
};

// Parses the argument vector, whose first entry is the program itself. Options are compared as
// whole words without regard to the case of ASCII letters.
ParsedCommandLine ParseCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace larkspan
