#include "tests/torture/SupervisorTraces.h"

#include <regex>
#include <string_view>

#include "tests/support/LogMessages.h"
#include "tests/torture/Outcome.h"

namespace larkspan::torture {

namespace {

struct Trace {
  std::string_view beginning;
  char letter;
};

constexpr Trace kTraces[] = {{message::kWorkerBegins, 't'},
                             {"Invoking child process", 'i'},
                             {"Child process exited cleanly", 'w'},
                             {"Child process returned non-zero value (", 'd'},
                             {"Child process complete", 'c'},
                             {"Checking for marker file", 'k'},
                             {"No marker file found", 'n'},
                             {message::kMarkerRead, 'm'},
                             {"End of Archive Main Loop", 'e'},
                             {kListCounted, 'l'},
                             {kListNotFound, 'l'},
                             {kListCutShort, 'l'}};

// Nothing for a line of another kind.
std::string LetterOf(const std::string& line) {
  if (!line.starts_with("#DEBUG#")) return "";
  for (const Trace& trace : kTraces) {
    if (MessageOf(line).starts_with(trace.beginning)) return std::string(1, trace.letter);
  }
  return "";
}

}  // namespace

bool IsSupervisorTrace(const std::string& line) { return !LetterOf(line).empty(); }

bool AreOfOneRun(const Lines& log) {
  static const std::regex oneRun("(ti[wd]ck[nm])+el");
  std::string letters;
  for (const std::string& line : log) letters += LetterOf(line);
  return std::regex_match(letters, oneRun);
}

}  // namespace larkspan::torture
