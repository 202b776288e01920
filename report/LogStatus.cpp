// In a file of its own: the words for a status are the Notes library's, and a program that only
// supervises workers has no such library.
#include "base/WideFormat.h"
#include "report/RunLog.h"

namespace larkspan {

void LogStatus(LogLevel level, const wchar_t* format, Status status) {
  Log(level, FormatMessageText(format, StatusText(status).c_str()));
}

}  // namespace larkspan
