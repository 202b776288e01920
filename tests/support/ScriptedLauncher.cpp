#include "tests/support/ScriptedLauncher.h"

#include <utility>

#include "tests/support/FileBytes.h"

namespace larkspan {

ScriptedLauncher::ScriptedLauncher(std::vector<ScriptedWorker> script, std::wstring outputFolder)
    : script_(std::move(script)), outputFolder_(std::move(outputFolder)) {}

WorkerEnding ScriptedLauncher::RunToEnd(const std::wstring& commandLine, const EndSignal&) {
  const std::size_t index = commandLines_.size();
  commandLines_.push_back(commandLine);
  if (index >= script_.size()) return {WorkerEnding::Kind::kExited, 0, true};
  const ScriptedWorker& worker = script_[index];
  if (worker.marker) WriteBytes(outputFolder_ + L"\\marker.txt", *worker.marker);
  return worker.ending;
}

}  // namespace larkspan
