// A command line. Each byte of the input is a character, one past 0x7F a character beyond ASCII.
#include <string>
#include <vector>

#include "app/Arguments.h"
#include "app/SupervisorRole.h"
#include "tests/fuzz/ParsedLineCheck.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

std::wstring CommandLineOf(const std::uint8_t* data, std::size_t size) {
  std::wstring line;
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned int character = data[i] < 0x80 ? data[i] : data[i] << 8;
    line.push_back(character == 0 ? L' ' : static_cast<wchar_t>(character));
  }
  return line;
}

bool IsSame(const Settings& left, const Settings& right) {
  return left.programPath == right.programPath && left.server == right.server &&
         left.databasePath == right.databasePath && left.outputFolder == right.outputFolder &&
         left.progressPipe == right.progressPipe && left.archive == right.archive &&
         left.fullAccess == right.fullAccess && left.idFile == right.idFile &&
         left.idPassword == right.idPassword && left.noViews == right.noViews &&
         left.minimumLogLevel == right.minimumLogLevel &&
         left.runtimeArguments == right.runtimeArguments;
}

// A worker of the supervisor with this line has its settings, but for the note where it begins.
void CheckWorker(const std::wstring& commandLine, const ParsedCommandLine& line) {
  if (!line.accepted || line.settings.resumeNoteId != kNoNoteId) return;
  if (!MakesWorkers(commandLine)) return;
  const ParsedCommandLine worker =
      ParseCommandLine(SplitCommandLine(commandLine + L" -l 0000002A"));
  Require(worker.accepted && worker.settings.resumeNoteId == 0x2A, "a worker has its note ID");
  Require(IsSame(worker.settings, line.settings), "a worker has its supervisor's settings");
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  const std::wstring commandLine = fuzz::CommandLineOf(data, size);
  if (commandLine.empty()) return 0;  // No process has one.
  const std::vector<std::wstring> arguments = SplitCommandLine(commandLine);
  const ParsedCommandLine line = ParseCommandLine(arguments);
  fuzz::CheckParsedLine(line, arguments);
  fuzz::CheckWorker(commandLine, line);
  return 0;
}
