#include "tests/torture/ProcessRun.h"

#include <windows.h>

#include "tests/support/FileBytes.h"
#include "tests/support/SystemProcess.h"
#include "tests/system/ExportRun.h"

namespace larkspan::torture {

namespace {

using testing::UniqueSystemHandle;

constexpr DWORD kLimitMilliseconds = 60000;
constexpr UINT kEndedByForce = 1;

// What the program starts belongs to the job too, so that no worker outlives it.
std::optional<std::uint32_t> RunToLimit(const std::wstring& executable,
                                        const std::wstring& commandLine) {
  const UniqueSystemHandle job(CreateJobObjectW(nullptr, nullptr));
  const testing::SystemProcess process =
      testing::StartProcess(executable, commandLine, nullptr, job.get());
  const std::optional<DWORD> exitCode =
      testing::AwaitExitCode(process.handle.get(), kLimitMilliseconds);
  if (exitCode) return *exitCode;
  TerminateJobObject(job.get(), kEndedByForce);
  testing::AwaitExitCode(process.handle.get(), kLimitMilliseconds);
  return std::nullopt;
}

ProcessRun Finish(const testing::ExportRun& run, const std::wstring& commandLine) {
  ProcessRun result;
  result.exitCode = RunToLimit(run.Executable(), commandLine);
  result.outcome = ReadOutcome(run.output());
  const std::size_t endedRuntimes = run.LedgerLines().size();
  if (endedRuntimes != 0) result.leftOpenByTheLast = run.LeftOpen(endedRuntimes - 1);
  const std::wstring misuse = run.folder() + L"\\misuse.txt";
  if (Exists(misuse)) result.misuse = ReadBytes(misuse);
  return result;
}

std::vector<std::wstring> ArgumentsFor(const Subject& subject) {
  std::vector<std::wstring> arguments = {L"-debug", L"-id", IdFileOf(subject), L"-password",
                                         kPassword};
  if (subject.archive) arguments.push_back(L"-archive");
  if (subject.fullAccess) arguments.push_back(L"-fullaccess");
  return arguments;
}

}  // namespace

ProcessRun RunProgram(const Subject& subject, const std::string& faultPlan) {
  testing::ExportRun run;
  run.SetDataFolder(subject.dataFolder);
  run.SetFaults(faultPlan);
  return Finish(run, run.CommandLine(subject.database, ArgumentsFor(subject)));
}

ProcessRun RunProgram(const Listing& listing, const std::string& faultPlan) {
  testing::ExportRun run;
  run.SetDataFolder(kOwnData);
  run.SetFaults(faultPlan);
  run.AddConfiguration(kListingConfiguration);
  std::vector<std::wstring> arguments = {run.Executable(), run.ConfigurationArgument(), L"-o",
                                         run.output()};
  for (const std::wstring& argument : ArgumentsFor(listing)) arguments.push_back(argument);
  return Finish(run, testing::BuildCommandLine(arguments));
}

}  // namespace larkspan::torture
