#include "standin/Platform.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "standin/CharacterSet.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <unistd.h>
#endif

namespace larkspan::standin {

namespace {

// The read of a volatile keeps the compiler from seeing that the recursion has no end.
int Recurse(int depth) {
  volatile char frame[4096] = {};
  frame[0] = static_cast<char>(depth);
  volatile bool deeper = true;
  return (deeper ? Recurse(depth + 1) : 0) + frame[0];
}

#ifdef _WIN32

LONG WINAPI EndQuietly(EXCEPTION_POINTERS*) {
  constexpr int kQuietExitCode = 77;
  EndProcessNow(kQuietExitCode);
}

#endif

}  // namespace

#ifdef _WIN32

std::u16string ArgumentToUtf16(std::string_view argument) {
  const int length = static_cast<int>(argument.size());
  const int needed = MultiByteToWideChar(CP_ACP, 0, argument.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(std::max(needed, 0)), L'\0');
  MultiByteToWideChar(CP_ACP, 0, argument.data(), length, wide.data(), needed);
  return {wide.begin(), wide.end()};
}

std::filesystem::path PathFromUtf16(std::u16string_view text) {
  return std::wstring(text.begin(), text.end());
}

std::string PathToUtf8(const std::filesystem::path& path) {
  const std::wstring& text = path.native();
  return Utf16ToUtf8(std::u16string(text.begin(), text.end()));
}

std::filesystem::path LibraryFolder() {
  HMODULE module = nullptr;
  const auto* address = reinterpret_cast<const wchar_t*>(&LibraryFolder);
  if (!GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          address, &module)) {
    return {};
  }
  std::wstring name(32768, L'\0');
  name.resize(GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size())));
  return std::filesystem::path(name).parent_path();
}

void WriteToStandardError(std::string_view text) {
  const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return;
  DWORD written = 0;
  WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

void EndProcessNow(int code) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code));
  HangForever();
}

void ExitProcessNormally(int code) { ExitProcess(static_cast<UINT>(code)); }

// Raising the signal ends the process with code 3 as abort does, but without its message box.
void AbortProcess() {
  std::raise(SIGABRT);
  EndProcessNow(3);
}

void RaiseSystemException(std::uint32_t code) {
  RaiseException(code, EXCEPTION_NONCONTINUABLE, 0, nullptr);
  EndProcessNow(static_cast<int>(code));
}

void EndThread() { ExitThread(0); }

void InstallQuietCrashFilter() { SetUnhandledExceptionFilter(EndQuietly); }

unsigned int ErrorMode() { return GetErrorMode(); }

int RuntimeErrorMode() { return _set_error_mode(_REPORT_ERRMODE); }

// The system gives handles out from the lowest number on.
int CountInheritableHandles() {
  constexpr std::uintptr_t kStep = 4;
  constexpr std::uintptr_t kNoHandleFrom = 0x2000;
  int count = 0;
  for (std::uintptr_t handle = kStep; handle < kNoHandleFrom; handle += kStep) {
    DWORD flags = 0;
    if (!GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags)) continue;
    if ((flags & HANDLE_FLAG_INHERIT) != 0) ++count;
  }
  return count;
}

// The first ones, the current folders of the drives, begin with "=".
std::vector<std::string> EnvironmentVariableNames() {
  std::vector<std::string> names;
  wchar_t* const all = GetEnvironmentStringsW();
  for (const wchar_t* entry = all; entry != nullptr && *entry != L'\0';) {
    const std::wstring_view text(entry);
    const std::wstring_view name = text.substr(0, text.find(L'=', 1));
    names.push_back(Utf16ToUtf8(std::u16string(name.begin(), name.end())));
    entry += text.size() + 1;
  }
  FreeEnvironmentStringsW(all);
  return names;
}

#else

std::u16string ArgumentToUtf16(std::string_view argument) { return Utf8ToUtf16(argument); }

std::filesystem::path PathFromUtf16(std::u16string_view text) {
  std::string utf8 = Utf16ToUtf8(text);
  std::replace(utf8.begin(), utf8.end(), '\\', '/');
  return utf8;
}

std::string PathToUtf8(const std::filesystem::path& path) { return path.native(); }

std::filesystem::path LibraryFolder() {
  Dl_info info = {};
  if (dladdr(reinterpret_cast<const void*>(&LibraryFolder), &info) == 0) return {};
  return std::filesystem::path(info.dli_fname).parent_path();
}

void WriteToStandardError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void EndProcessNow(int code) { _exit(code); }

void ExitProcessNormally(int code) { std::_Exit(code); }

void AbortProcess() { std::abort(); }

void RaiseSystemException(std::uint32_t) { std::abort(); }

void EndThread() { std::abort(); }

void InstallQuietCrashFilter() {}

unsigned int ErrorMode() { return 0; }

int RuntimeErrorMode() { return 0; }

int CountInheritableHandles() { return 0; }

std::vector<std::string> EnvironmentVariableNames() { return {}; }

#endif

void CauseAccessViolation() {
  int* volatile nowhere = nullptr;
  *nowhere = 1;
  AbortProcess();
}

void CauseStackOverflow() {
  Recurse(0);
  AbortProcess();
}

void StartThreadThatCrashes() { std::thread(CauseAccessViolation).detach(); }

void HangForever() {
  for (;;) PauseMilliseconds(3'600'000);
}

void PauseMilliseconds(std::uint32_t milliseconds) {
#ifdef _WIN32
  Sleep(milliseconds);
#else
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
#endif
}

}  // namespace larkspan::standin
