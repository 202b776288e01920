// Workers that end as a test's script says, without any process.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Settings.h"
#include "supervision/WorkerLauncher.h"

namespace larkspan {

struct ScriptedWorker {
  WorkerEnding ending;
  std::optional<std::string> marker;  // The bytes that it leaves in its marker file, if any.
};

// Plays the workers of the script one after another in an output folder. A worker
// beyond the script ends cleanly without a marker, so that the run ends.
class ScriptedLauncher : public WorkerLauncher {
 public:
  explicit ScriptedLauncher(std::vector<ScriptedWorker> script,
                            std::wstring outputFolder = ProcessSettings().outputFolder);

  WorkerEnding RunToEnd(const std::wstring& commandLine, const EndSignal& signal) override;

  // Those of the workers started so far.
  const std::vector<std::wstring>& commandLines() const { return commandLines_; }

 private:
  std::vector<ScriptedWorker> script_;
  std::wstring outputFolder_;
  std::vector<std::wstring> commandLines_;
};

}  // namespace larkspan
