// A run log that keeps nothing and pauses that take no time.
#include <utility>

#include "base/Pause.h"
#include "base/Settings.h"
#include "report/RunLog.h"

namespace larkspan {

RunLog::RunLog(std::wstring outputFolder, LogLevel minimumLevel)
    : outputFolder_(std::move(outputFolder)), minimumLevel_(minimumLevel) {}

void RunLog::Debug(const wchar_t*, ...) const {}

void RunLog::Error(const wchar_t*, ...) const {}

RunLog ProcessRunLog() { return RunLog(ProcessSettings().outputFolder, LogLevel::kError); }

void Pause(std::chrono::milliseconds) {}

}  // namespace larkspan
