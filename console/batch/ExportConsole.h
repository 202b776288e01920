// One export of a batch at work: this program, started again, which tells what it does as events.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/follow/JobProcess.h"
#include "console/follow/LineSource.h"

namespace larkspan::console {

class ExportConsole {
 public:
  // The arguments are those behind the program's name; no password is among them.
  ExportConsole(const std::vector<std::wstring>& arguments, const std::wstring& password);

  bool Started() const { return static_cast<bool>(process_.handle); }
  DWORD systemError() const { return process_.systemError; }

  // The lines that came since, once it has ended all that are left.
  std::vector<std::string> TakeLines();

  bool HasEnded() const;

  // Of one that has ended; no value when that is none of this program's codes.
  std::optional<ExitCode> Code() const;
  std::uint32_t SystemCode() const;

  // Asks for the end at the next note.
  void AskToStop() { processes_.AskToStop(); }

  // Ends it at once, with all that it has started.
  void EndAll() { processes_.EndAll(); }

 private:
  ExportProcesses processes_;
  StartedProcess process_;
  LineSource lines_;
};

}  // namespace larkspan::console
