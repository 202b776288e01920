#include "tests/torture/ProcessRun.h"

#include <windows.h>

#include <utility>

#include "app/Arguments.h"
#include "app/CommandLine.h"
#include "supervision/Supervisor.h"
#include "tests/support/ExportRun.h"
#include "tests/support/FileBytes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/SystemProcess.h"

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
      testing::StartProcess(executable, commandLine, testing::OpenNowhere().get(), job.get());
  const std::optional<DWORD> exitCode =
      testing::AwaitExitCode(process.handle.get(), kLimitMilliseconds);
  if (exitCode) return *exitCode;
  TerminateJobObject(job.get(), kEndedByForce);
  testing::AwaitExitCode(process.handle.get(), kLimitMilliseconds);
  return std::nullopt;
}

// Starts real workers: the first is to die, the others have the fault plan. A worker that does not
// end is the last.
class ResumingLauncher : public WorkerLauncher {
 public:
  // The configuration names the file with the fault plan by now.
  ResumingLauncher(const testing::ExportRun& run, std::string faultPlan)
      : run_(run), faultPlan_(std::move(faultPlan)) {}

  WorkerEnding RunToEnd(const std::wstring& commandLine, const EndSignal& signal) override {
    if (!allEnd_) return {WorkerEnding::Kind::kNotCreated, ERROR_TIMEOUT};
    const std::optional<std::uint32_t> exitCode = RunToLimit(run_.Executable(), commandLine);
    allEnd_ = exitCode.has_value();
    run_.ChangeFaults(faultPlan_);
    return {WorkerEnding::Kind::kExited, exitCode.value_or(kEndedByForce), signal.IsGiven()};
  }

  bool allEnd() const { return allEnd_; }

 private:
  const testing::ExportRun& run_;
  const std::string faultPlan_;
  bool allEnd_ = true;
};

std::optional<std::uint32_t> RunResumed(const testing::ExportRun& run,
                                        const std::wstring& commandLine,
                                        const std::string& faultPlan) {
  const PauseRecorder nobodyWaits;
  SetProcessSettings(ParseCommandLine(SplitCommandLine(commandLine)).settings);
  ResumingLauncher launcher(run, faultPlan);
  RunSupervisor(launcher, commandLine, ProcessRunLog());
  return launcher.allEnd() ? std::optional<std::uint32_t>(0) : std::nullopt;
}

ProcessRun Read(const testing::ExportRun& run, std::optional<std::uint32_t> exitCode) {
  ProcessRun result;
  result.exitCode = exitCode;
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
  const bool isResumed = subject.resumeAt != 0;
  run.SetFaults(isResumed ? PlanOfTheEarlierWorker(subject, "accessViolation") : faultPlan);
  const std::wstring commandLine = run.CommandLine(subject.database, ArgumentsFor(subject));
  return Read(run, isResumed ? RunResumed(run, commandLine, faultPlan)
                             : RunToLimit(run.Executable(), commandLine));
}

ProcessRun RunProgram(const Listing& listing, const std::string& faultPlan) {
  testing::ExportRun run;
  run.SetDataFolder(kOwnData);
  run.SetFaults(faultPlan);
  run.AddConfiguration(kListingConfiguration);
  std::vector<std::wstring> arguments = {run.Executable(), run.ConfigurationArgument(), L"-o",
                                         run.output()};
  for (const std::wstring& argument : ArgumentsFor(listing)) arguments.push_back(argument);
  return Read(run, RunToLimit(run.Executable(), testing::BuildCommandLine(arguments)));
}

}  // namespace larkspan::torture
