// One thread reads the pipe and sets a flag, the main thread looks at it before each line: a run
// stops between two notes, never within one. No lock is used, and none is needed.
#include "report/Progress.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>

#include "base/Settings.h"
#include "base/Utf8.h"
#include "base/WideFormat.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr wchar_t kAbnormalTermination[] = L"MonitorPipe: Abnormal termination";

std::atomic<bool> stopRequested{false};

void WriteToStandardOutput(std::wstring_view piece) {
  const std::string utf8 = WideToUtf8(piece);
  std::fwrite(utf8.data(), 1, utf8.size(), stdout);
}

void ReadUpToTenBytes(std::int64_t pipe) {
  std::array<char, 10> bytes;
  DWORD read = 0;
  ReadFile(reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(pipe)), bytes.data(),
           static_cast<DWORD>(bytes.size()), &read, nullptr);
}

DWORD WINAPI MonitorPipeThread(void*) {
  MonitorPipe(ReadUpToTenBytes);
  return 0;
}

}  // namespace

bool Progress(const wchar_t* format, ...) {
  if (!ProcessSettings().archive) return false;
  if (stopRequested) return true;
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring message = FormatMessageV(format, arguments);
  va_end(arguments);
  WriteToStandardOutput(L"PROGRESS: ");
  WriteToStandardOutput(message);
  WriteToStandardOutput(L"\n");
  std::fflush(stdout);
  return false;
}

void StartPipeMonitor() {
  const HANDLE thread = CreateThread(nullptr, 0, MonitorPipeThread, nullptr, 0, nullptr);
  if (thread == nullptr) {
    LogWarning(kAbnormalTermination);
  } else {
    CloseHandle(thread);
  }
}

void MonitorPipe(const PipeRead& read) {
  const std::int64_t pipe = ProcessSettings().progressPipe;
  if (pipe == kNoPipe) return;
  try {
    read(pipe);
  } catch (...) {
    LogWarning(kAbnormalTermination);
    return;
  }
  LogDebug(L"MonitorPipe: Read completed cleanly");
  stopRequested = true;
}

void ClearStopRequestForTesting() { stopRequested = false; }

}  // namespace larkspan
