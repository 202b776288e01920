// Everything in which the stand-in library differs between Windows and other systems: text of
// program arguments, file paths, the end of the process, and the ways in which a library can be
// made to misbehave. No other file of the stand-in library asks which system it is built for.
// Any thread may call these functions; they keep no state.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace larkspan::standin {

// The text of a program argument: ANSI code page on Windows, UTF-8 elsewhere.
std::u16string ArgumentToUtf16(std::string_view argument);

// Accepts unpaired surrogates. Backslashes separate folders on every system.
std::filesystem::path PathFromUtf16(std::u16string_view text);
std::string PathToUtf8(const std::filesystem::path& path);

// The folder of the file that holds this library; empty when the system does not tell.
std::filesystem::path LibraryFolder();

void WriteToStandardError(std::string_view text);

// Ends the process without running any handler or showing any window.
[[noreturn]] void EndProcessNow(int code);

// Ends the process the way a library does that calls the C runtime's exit or abort.
[[noreturn]] void ExitProcessNormally(int code);
[[noreturn]] void AbortProcess();

[[noreturn]] void CauseAccessViolation();
[[noreturn]] void CauseStackOverflow();

// Starts a thread that causes an access violation. The caller goes on.
void StartThreadThatCrashes();

// Raises a system exception with this code; systems without such exceptions abort.
[[noreturn]] void RaiseSystemException(std::uint32_t code);

// Ends the calling thread and leaves the others alone; aborts on systems other than Windows.
[[noreturn]] void EndThread();

// From now on a fault that nobody handles ends the process quietly, with exit code 77. Elsewhere
// than on Windows nothing changes.
void InstallQuietCrashFilter();

// How the process answers faults and critical errors, and where the C runtime that it shares with
// the library says its messages: the modes that both tell, 0 elsewhere than on Windows.
unsigned int ErrorMode();
int RuntimeErrorMode();

// How many of this process's handles a process that it starts can inherit; 0 elsewhere than on
// Windows.
int CountInheritableHandles();

// The names of the environment variables that a process inherits which this one starts; none
// elsewhere than on Windows.
std::vector<std::string> EnvironmentVariableNames();

[[noreturn]] void HangForever();
void PauseMilliseconds(std::uint32_t milliseconds);

}  // namespace larkspan::standin
