#include <windows.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <string>

#include "bench/Workload.h"
#include "bench/floor/Files.h"
#include "bench/floor/Floors.h"
#include "notes/NotesApi.h"

namespace larkspan::bench {

namespace {

std::wstring OwnPath() {
  std::array<wchar_t, 32768> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  return path.data();
}

// Returns the exit code.
DWORD StartAndAwait(const std::wstring& commandLine) { return ExitCodeOf(Start(commandLine)); }

// A program that failed has done less than it is measured for.
void StartAndAwaitGoodEnd(const std::wstring& commandLine) {
  if (StartAndAwait(commandLine) != 0) Fail("a program that is measured");
}

std::wstring OwnCommandLine(const std::wstring& arguments) {
  return L'"' + OwnPath() + L"\" " + arguments;
}

// The note in the marker file, which is gone afterwards.
std::uint32_t TakeMarker(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) Fail("open");
  std::array<char, 11> digits{};
  DWORD read = 0;
  ReadFile(file, digits.data(), 10, &read, nullptr);
  CloseHandle(file);
  DeleteIfThere(path);
  return static_cast<std::uint32_t>(std::strtoul(digits.data(), nullptr, 16));
}

// As the program does: no box is shown and nobody told before the process ends.
LONG WINAPI EndAtCrash(EXCEPTION_POINTERS*) { return EXCEPTION_EXECUTE_HANDLER; }

std::wstring MarkerIn(const std::wstring& folder) { return folder + L"\\marker.txt"; }

}  // namespace

StartedProgram Start(std::wstring commandLine) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &process) == 0) {
    Fail("start");
  }
  CloseHandle(process.hThread);
  return {process.hProcess, process.dwProcessId};
}

std::uint32_t ExitCodeOf(const StartedProgram& program) {
  WaitForSingleObject(program.process, INFINITE);
  DWORD exitCode = 0;
  if (GetExitCodeProcess(program.process, &exitCode) == 0) Fail("ask for an exit code");
  CloseHandle(program.process);
  return exitCode;
}

void StartOneself(const std::wstring& arguments) {
  StartAndAwaitGoodEnd(OwnCommandLine(arguments));
}

void StartTimes(std::uint32_t count, const std::wstring& commandLine) {
  for (std::uint32_t i = 0; i < count; ++i) StartAndAwaitGoodEnd(commandLine);
}

std::int64_t TimeOf(const std::wstring& commandLine) {
  const auto start = std::chrono::steady_clock::now();
  StartAndAwaitGoodEnd(commandLine);
  const auto taken = std::chrono::steady_clock::now() - start;
  return std::chrono::duration_cast<std::chrono::microseconds>(taken).count();
}

void StartAndCrash(const std::wstring& folder) {
  std::uint32_t note = 0;
  while (note < ProcessWorkload().notes) {
    const std::wstring arguments = L"crash \"" + folder + L"\" " + std::to_wstring(note + 1);
    if (StartAndAwait(OwnCommandLine(arguments)) != EXCEPTION_ACCESS_VIOLATION) Fail("a crash");
    note = TakeMarker(MarkerIn(folder));
  }
}

void CrashAtNote(const std::wstring& folder, std::uint32_t note) {
  SetUnhandledExceptionFilter(EndAtCrash);
  notes_api::NotesInitExtended(0, nullptr);
  const std::wstring digits = NumberedFile(L"", note, L"");
  ReplaceFile(MarkerIn(folder), std::string(digits.begin() + 1, digits.end()) + "\r\n");
  RaiseException(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}

void StartRuntime() {
  notes_api::NotesInitExtended(0, nullptr);
  notes_api::NotesTerm();
}

}  // namespace larkspan::bench
