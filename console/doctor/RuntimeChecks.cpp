#include "console/doctor/RuntimeChecks.h"

#include "console/doctor/EndingText.h"
#include "console/folder/AuditFile.h"
#include "console/folder/TemporaryFolder.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

// The words of larkspan.exe.
constexpr std::string_view kNoConfiguration = "Unable to locate notes.ini";
constexpr std::string_view kNotInitialized = "Notes initialization failed";
constexpr std::string_view kIdNotSwitched = "Unable to switch ID";
constexpr std::string_view kNotOpened = "Error opening database";

constexpr char kStartByHand[] =
    "Start Notes by hand on this machine as this user, and see that it comes up without a "
    "question.";

// Nobody's database, on this machine.
ExportRequest WithoutDatabase(ExportRequest run) {
  run.server.clear();
  run.path = "larkspan-doctor-none.nsf";
  run.fullAccess = false;
  return run;
}

}  // namespace

RuntimeTrial TryRuntime(const TrialSurroundings& around, std::string& whyNot) {
  const TemporaryFolder folder;
  if (folder.path().empty()) {
    whyNot = "no folder can be made for temporary files";
    return {};
  }
  RuntimeTrial trial;
  trial.end = RunFirstWorker(around, WithoutDatabase(around.request.run), folder.path());
  trial.error = LastErrorIn(folder.path());
  trial.warnings = WarningsIn(folder.path());
  trial.user = ReadAuditFile(folder.path()).block.user;
  return trial;
}

CheckFinding JudgeBadEnd(const TrialEnd& end, std::uint64_t timeoutMilliseconds) {
  switch (end.kind) {
    case TrialEnd::Kind::kNotStarted:
      return Failed("larkspan.exe could not be started (error " + std::to_string(end.code) + ")",
                    "Give this user the right to run larkspan.exe, and see that no virus scanner "
                    "holds it back.");
    case TrialEnd::Kind::kHung:
      return Failed("larkspan.exe gave no sign for " + DurationText(timeoutMilliseconds / 1000) +
                        " and was ended",
                    std::string(kStartByHand) + " Where that takes long, give a longer --timeout.");
    case TrialEnd::Kind::kStopped:
      return NotTried("stopped by the user");
    default:
      break;
  }
  if (IsLoadFailure(end.code)) {
    return Failed(
        "Windows could not load larkspan.exe (" + EndingText(end.code) + ")",
        "Put larkspan.exe and larkspan-console.exe into the Notes program folder, and see "
        "that Notes itself starts on this machine.");
  }
  return Failed("larkspan.exe ended by itself, unexpectedly (" + EndingText(end.code) + ")",
                kStartByHand);
}

CheckFinding JudgeRuntime(const RuntimeTrial& trial, std::uint64_t timeoutMilliseconds) {
  if (trial.error == kNoConfiguration) {
    return Failed("the library finds no notes.ini",
                  "Name the notes.ini of this machine's Notes with --notes-ini.");
  }
  for (const std::string& warning : trial.warnings) {
    if (warning.starts_with(kNotInitialized)) return Failed(warning, kStartByHand);
  }
  const bool started = !trial.user.empty() || !trial.error.empty();
  const bool endedWell = trial.end.kind == TrialEnd::Kind::kOwnEnd;
  if (!started && !endedWell) return JudgeBadEnd(trial.end, timeoutMilliseconds);
  if (trial.end.kind == TrialEnd::Kind::kStopped) return NotTried("stopped by the user");
  if (!endedWell) {
    const CheckFinding end = JudgeBadEnd(trial.end, timeoutMilliseconds);
    return Warned("it starts, and then " + end.detail, end.advice);
  }
  const bool isExpected = trial.error.empty() || trial.error.starts_with(kNotOpened) ||
                          trial.error.starts_with(kIdNotSwitched);
  if (isExpected) return Passed("it starts and ends in a process of larkspan.exe");
  return Failed("it starts, but: " + trial.error,
                "Use a machine with a newer Notes, or install this one anew.");
}

CheckFinding JudgeUser(const RuntimeTrial& trial) {
  if (trial.error.starts_with(kIdNotSwitched)) {
    return Failed(trial.error, "Give the right ID file with --id-file, and its password.");
  }
  if (trial.user.empty()) {
    return Warned("the library does not tell as whom it works",
                  "Name an ID file with --id-file, or see that notes.ini names one.");
  }
  return Passed(trial.user);
}

}  // namespace larkspan::console
