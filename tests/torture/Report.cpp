#include "tests/torture/Report.h"

#include <io.h>
#include <windows.h>

#include <cstdio>
#include <mutex>
#include <stdexcept>

namespace larkspan::torture {

namespace {

constexpr DWORD kLimitMilliseconds = 120000;  // More than a process is given.
constexpr UINT kFailed = 1;
constexpr std::size_t kMostFindings = 12;
constexpr std::size_t kMostBytes = 600;  // Of a finding.

// What other threads, and a crash, read. Never destroyed: they may outlive the report.
struct Watched {
  std::FILE* output = nullptr;
  HANDLE caseEnded = nullptr;
  std::mutex mutex;
  std::string name;
};

Watched& TheWatched() {
  static Watched& watched = *new Watched;
  return watched;
}

void PrintLine(const std::string& line) {
  std::fputs((line + "\n").c_str(), TheWatched().output);
  std::fflush(TheWatched().output);
}

[[noreturn]] void EndWith(const char* what) {
  const std::lock_guard lock(TheWatched().mutex);
  PrintLine(TheWatched().name + ": " + what);
  TerminateProcess(GetCurrentProcess(), kFailed);
  std::abort();  // Never reached; tells the compiler so.
}

DWORD WINAPI WatchForHangs(void*) {
  while (WaitForSingleObject(TheWatched().caseEnded, kLimitMilliseconds) == WAIT_OBJECT_0) {
  }
  EndWith("does not end");
}

LONG WINAPI NameCrashedCase(EXCEPTION_POINTERS*) { EndWith("crashes the process"); }

void SetName(const std::string& name) {
  const std::lock_guard lock(TheWatched().mutex);
  TheWatched().name = name;
}

void TakeOverStandardOutput() {
  TheWatched().output = _fdopen(_dup(_fileno(stdout)), "w");
  if (TheWatched().output == nullptr || std::freopen("NUL", "w", stdout) == nullptr) {
    throw std::runtime_error("standard output cannot be taken over");
  }
}

}  // namespace

Report::Report(std::string sweep, bool trace) : sweep_(std::move(sweep)), trace_(trace) {
  TakeOverStandardOutput();
  TheWatched().caseEnded = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const HANDLE thread = CreateThread(nullptr, 0, WatchForHangs, nullptr, 0, nullptr);
  if (thread != nullptr) CloseHandle(thread);
  SetUnhandledExceptionFilter(NameCrashedCase);
}

void Report::Begin(const std::string& name) {
  case_ = name;
  SetName(name);
  if (trace_) Print(name);
}

void Report::End(Lines findings, const Lines& log) {
  ++cases_;
  SetEvent(TheWatched().caseEnded);
  if (findings.empty()) return;
  findings.insert(findings.end(), log.begin(), log.end());
  ++failedCases_;
  hasFindings_ = true;
  Print("FAILED: " + case_);
  for (std::size_t i = 0; i < findings.size() && i < kMostFindings; ++i) {
    Print("  " + findings[i].substr(0, kMostBytes));
  }
}

void Report::PrintFigures(const std::string& subject, const std::string& details) {
  const auto now = std::chrono::steady_clock::now();
  const double seconds = std::chrono::duration<double>(now - begun_).count();
  char figures[128];
  std::snprintf(figures, sizeof figures, "%d runs, %d with findings, %.1f s (%.1f runs/s)", cases_,
                failedCases_, seconds, cases_ / seconds);
  Print(sweep_ + " " + subject + ": " + figures + "; " + details);
  begun_ = now;
  cases_ = 0;
  failedCases_ = 0;
  hasRun_ = true;
}

void Report::Print(const std::string& line) { PrintLine(line); }

}  // namespace larkspan::torture
