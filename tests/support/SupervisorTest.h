// The base of tests of the supervisor: scripted workers, recorded pauses.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "supervision/Supervisor.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/ScriptedLauncher.h"

namespace larkspan {

inline constexpr WorkerEnding kCleanExit{WorkerEnding::Kind::kExited, 0, true};
inline constexpr WorkerEnding kAccessViolation{WorkerEnding::Kind::kExited, 0xC0000005};

inline const ScriptedWorker kCompletes{kCleanExit, std::nullopt};

inline ScriptedWorker CrashesAt(const std::string& marker) {
  return {kAccessViolation, marker + "\r\n"};
}

using CommandLines = std::vector<std::wstring>;

class SupervisorTest : public OutputFolderTest {
 protected:
  // Returns the command lines of the workers that ran.
  CommandLines Run(std::vector<ScriptedWorker> script, const std::wstring& commandLine = L"run") {
    ScriptedLauncher launcher(std::move(script));
    RunSupervisor(launcher, commandLine, ProcessRunLog());
    return launcher.commandLines();
  }

  const std::vector<long long>& pauses() const { return recorder_.pauses(); }

  // The lines of the run log above DEBUG.
  Lines Complaints() const {
    Lines complaints = LogLines();
    std::erase_if(complaints, [](const auto& line) { return line.starts_with("#DEBUG#"); });
    return complaints;
  }

 private:
  PauseRecorder recorder_;
};

inline const std::string kMajor = "#WARNING# - Major: Incomplete run detected for note id ";
inline const std::string kEndedOutsideANote =
    "#ERROR# - Child process returned 3221225477 outside a note; the export may be incomplete";
inline const std::string kGaveUp = "#ERROR# - Maximum retries exceeded";

// In these scripts no document is ever listed, so lost notes give one more line at the end.
inline std::string Mismatch(int found) {
  return "#WARNING# - Document count mismatch: expected 0 but only found " + std::to_string(found);
}

}  // namespace larkspan
