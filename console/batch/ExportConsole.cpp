#include "console/batch/ExportConsole.h"

#include <chrono>

namespace larkspan::console {

namespace {

// What it wrote is in the pipe when it has ended; a process of somebody else's that has the other
// end of that as well must not hold this one up.
constexpr std::chrono::seconds kLongestRead{5};

std::wstring CommandLine(const std::wstring& program, std::vector<std::wstring> arguments) {
  arguments.insert(arguments.begin(), program);
  return BuildCommandLine(arguments);
}

}  // namespace

ExportConsole::ExportConsole(const std::vector<std::wstring>& arguments,
                             const std::wstring& password)
    : processes_(password, StopBy::kEndOfInput),
      process_(processes_.Start(OwnPath(), CommandLine(OwnPath(), arguments))),
      lines_(processes_.TakeOutput()) {
  processes_.StartNoMore();
}

std::vector<std::string> ExportConsole::TakeLines() {
  if (HasEnded()) lines_.AwaitEnd(kLongestRead);
  return lines_.Take();
}

bool ExportConsole::HasEnded() const {
  return WaitForSingleObject(process_.handle.get(), 0) == WAIT_OBJECT_0;
}

std::uint32_t ExportConsole::SystemCode() const {
  DWORD code = 0;
  GetExitCodeProcess(process_.handle.get(), &code);
  return code;
}

std::optional<ExitCode> ExportConsole::Code() const {
  const std::uint32_t code = SystemCode();
  if (code > static_cast<std::uint32_t>(ExitCode::kIncomplete)) return std::nullopt;
  return static_cast<ExitCode>(code);
}

}  // namespace larkspan::console
