// Each text is one open, write and close: a crash loses no line, and the processes of a run share
// no handle.
#include "report/ReportText.h"

#include <mutex>

#include "base/FileSystem.h"
#include "base/LineEnds.h"
#include "base/Utf8.h"

namespace larkspan {

void AppendReportText(const std::wstring& path, std::wstring_view text) {
  // Wine finds the end of a file and writes there in two steps, between which another thread's text
  // can come to stand at the same place.
  static std::mutex oneThreadAtATime;
  const std::lock_guard lock(oneThreadAtATime);
  file_system::Append(path, WithCarriageReturns(WideLineToUtf8(text)));
}

}  // namespace larkspan
