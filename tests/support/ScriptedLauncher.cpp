#include "tests/support/ScriptedLauncher.h"

#include <utility>

#include "app/Settings.h"
#include "tests/support/FileBytes.h"

namespace larkspan {

ScriptedLauncher::ScriptedLauncher(std::vector<ScriptedWorker> script)
    : script_(std::move(script)) {}

WorkerEnding ScriptedLauncher::RunToEnd(const std::wstring& commandLine) {
  const std::size_t index = commandLines_.size();
  commandLines_.push_back(commandLine);
  if (index >= script_.size()) return {WorkerEnding::Kind::kExited, 0, true};
  const ScriptedWorker& worker = script_[index];
  if (worker.marker) WriteBytes(ProcessSettings().outputFolder + L"\\marker.txt", *worker.marker);
  return worker.ending;
}

}  // namespace larkspan
