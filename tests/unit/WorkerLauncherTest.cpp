// Real processes: the system's own command interpreter stands in for the program.
#include "supervision/WorkerLauncher.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "tests/support/CommandInterpreter.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/ScopedEnvironmentVariable.h"
#include "tests/support/SupervisorTest.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

WorkerEnding RunProgram(const std::wstring& program, const std::wstring& commandLine) {
  return ProcessLauncher(program).RunToEnd(commandLine, EndSignal(L"C:\\out", 0));
}

// Lets the interpreter run a command that ends with an exit code.
WorkerEnding RunCommand(const std::wstring& command) {
  return RunProgram(CommandInterpreter(), L"cmd /c " + command);
}

// The system's function, whatever stands in its place.
template <typename Function>
Function SystemsOwn(const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

class WorkerLauncherTest : public testing::Test {
 protected:
  const TempFolder folder_;
};

TEST_F(WorkerLauncherTest, ExitCodeIsTold) {
  for (const std::uint32_t code : {0u, 1u, 259u}) {
    const WorkerEnding ending = RunCommand(L"exit " + std::to_wstring(code));
    EXPECT_EQ(ending.kind, WorkerEnding::Kind::kExited);
    EXPECT_EQ(ending.code, code);
  }
}

TEST_F(WorkerLauncherTest, ProcessThatDoesNotSayThatItIsDoneIsNotAtItsOwnEnd) {
  EXPECT_FALSE(RunCommand(L"exit 0").atItsOwnEnd);
}

HANDLE WINAPI RefuseEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, const wchar_t*) { return nullptr; }

TEST_F(WorkerLauncherTest, WithoutAnEventTheExitCodeTellsOfTheEnd) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateEventW", RefuseEvent);
  EXPECT_TRUE(RunCommand(L"exit 0").atItsOwnEnd);
  EXPECT_FALSE(RunCommand(L"exit 1").atItsOwnEnd);
}

BOOL WINAPI TellNoExitCode(HANDLE, DWORD*) { return FALSE; }

TEST_F(WorkerLauncherTest, ExitCodeThatTheSystemDoesNotTellIsUnknown) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetExitCodeProcess", TellNoExitCode);
  const WorkerEnding ending = RunCommand(L"exit 0");
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kExitCodeUnknown);
  EXPECT_FALSE(ending.atItsOwnEnd);
}

TEST_F(WorkerLauncherTest, WithoutAnEventAnUnknownExitCodeIsNoEndOfItsOwn) {
  const ReplacedEntryPoint event("KERNEL32.dll", "CreateEventW", RefuseEvent);
  const ReplacedEntryPoint code("KERNEL32.dll", "GetExitCodeProcess", TellNoExitCode);
  EXPECT_FALSE(RunCommand(L"exit 0").atItsOwnEnd);
}

TEST_F(WorkerLauncherTest, ProgramThatIsNotThereIsNotCreated) {
  const WorkerEnding ending = RunProgram(folder_ / L"\\none.exe", L"none -l 00000000");
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_EQ(ending.code, DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(WorkerLauncherTest, FileThatIsNoProgramIsNotCreated) {
  WriteBytes(folder_ / L"\\text.exe", "a text");
  const WorkerEnding ending = RunProgram(folder_ / L"\\text.exe", L"text");
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_EQ(ending.code, DWORD{ERROR_BAD_EXE_FORMAT});
}

BOOL WINAPI CreateNoProcess(const wchar_t*, wchar_t*, SECURITY_ATTRIBUTES*, SECURITY_ATTRIBUTES*,
                            BOOL, DWORD, void*, const wchar_t*, STARTUPINFOW*,
                            PROCESS_INFORMATION*) {
  SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

TEST_F(WorkerLauncherTest, CommandLineThatTheSystemTakesIsHandedOn) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateProcessW", CreateNoProcess);
  const WorkerEnding ending = RunProgram(CommandInterpreter(), std::wstring(32766, L'x'));
  EXPECT_EQ(ending.code, DWORD{ERROR_ACCESS_DENIED});
}

BOOL WINAPI CreateNothing(const wchar_t*, wchar_t*, SECURITY_ATTRIBUTES*, SECURITY_ATTRIBUTES*,
                          BOOL, DWORD, void*, const wchar_t*, STARTUPINFOW*, PROCESS_INFORMATION*) {
  ADD_FAILURE() << "a process is started";
  return FALSE;
}

TEST_F(WorkerLauncherTest, LongerCommandLineIsNotStarted) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateProcessW", CreateNothing);
  const WorkerEnding ending = RunProgram(CommandInterpreter(), std::wstring(32767, L'x'));
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_EQ(ending.code, DWORD{ERROR_FILENAME_EXCED_RANGE});
}

DWORD lengthOfOwnPath = 0;

DWORD WINAPI TellOwnPath(HMODULE, wchar_t* path, DWORD size) {
  for (DWORD i = 0; i < size; ++i) path[i] = i < lengthOfOwnPath ? L'x' : L'\0';
  path[size - 1] = L'\0';
  return lengthOfOwnPath < size ? lengthOfOwnPath : size;
}

std::wstring startedProgram;

BOOL WINAPI RecordProgram(const wchar_t* program, wchar_t*, SECURITY_ATTRIBUTES*,
                          SECURITY_ATTRIBUTES*, BOOL, DWORD, void*, const wchar_t*, STARTUPINFOW*,
                          PROCESS_INFORMATION*) {
  startedProgram = program;
  return FALSE;
}

TEST_F(WorkerLauncherTest, OwnPathOf261CharactersIsStartedWhole) {
  lengthOfOwnPath = 261;
  const ReplacedEntryPoint path("KERNEL32.dll", "GetModuleFileNameW", TellOwnPath);
  const ReplacedEntryPoint process("KERNEL32.dll", "CreateProcessW", RecordProgram);
  ProcessLauncher().RunToEnd(L"x", EndSignal(L"C:\\out", 0));
  EXPECT_EQ(startedProgram, std::wstring(261, L'x'));
}

TEST_F(WorkerLauncherTest, OwnPathThatIsLongerIsNotStarted) {
  lengthOfOwnPath = 262;
  const ReplacedEntryPoint path("KERNEL32.dll", "GetModuleFileNameW", TellOwnPath);
  const ReplacedEntryPoint process("KERNEL32.dll", "CreateProcessW", CreateNothing);
  const WorkerEnding ending = ProcessLauncher().RunToEnd(L"x", EndSignal(L"C:\\out", 0));
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_EQ(ending.code, DWORD{ERROR_FILENAME_EXCED_RANGE});
}

struct Start {
  BOOL inherits = FALSE;
  DWORD flags = 1;
  void* environment = nullptr;
  std::wstring folder;
  STARTUPINFOW startUp{};
};
Start start;

BOOL WINAPI RecordStart(const wchar_t* program, wchar_t* commandLine, SECURITY_ATTRIBUTES* process,
                        SECURITY_ATTRIBUTES* thread, BOOL inherits, DWORD flags, void* environment,
                        const wchar_t* folder, STARTUPINFOW* startUp,
                        PROCESS_INFORMATION* created) {
  start = {inherits, flags, environment, folder == nullptr ? L"" : folder, *startUp};
  return SystemsOwn<decltype(&CreateProcessW)>("CreateProcessW")(
      program, commandLine, process, thread, inherits, flags, environment, folder, startUp,
      created);
}

TEST_F(WorkerLauncherTest, ProcessIsStartedWithoutFlagsAndWithAnEmptyDescription) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateProcessW", RecordStart);
  RunCommand(L"exit 0");
  EXPECT_TRUE(start.inherits);
  EXPECT_EQ(start.flags, 0u);
  EXPECT_EQ(start.environment, nullptr);
  EXPECT_EQ(start.folder, L"");
  const STARTUPINFOW empty{};
  EXPECT_EQ(std::memcmp(&start.startUp, &empty, sizeof empty), 0);
}

int closedHandles = 0;

BOOL WINAPI CountClosing(HANDLE handle) {
  ++closedHandles;
  return SystemsOwn<decltype(&CloseHandle)>("CloseHandle")(handle);
}

TEST_F(WorkerLauncherTest, HandlesOfTheProcessAndItsThreadAreClosed) {
  const EndSignal signal(L"C:\\out", 0);
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CloseHandle", CountClosing);
  closedHandles = 0;
  ProcessLauncher(CommandInterpreter()).RunToEnd(L"cmd /c exit 0", signal);
  EXPECT_EQ(closedHandles, 2);
}

TEST_F(WorkerLauncherTest, EnvironmentIsInherited) {
  const ScopedEnvironmentVariable variable(L"LARKSPAN_TEST", L"seen");
  EXPECT_EQ(RunCommand(L"if \"%LARKSPAN_TEST%\"==\"seen\" (exit 5) else (exit 6)").code, 5u);
}

TEST_F(WorkerLauncherTest, CurrentFolderIsInherited) {
  WriteBytes(folder_ / L"\\here.txt", "");
  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  const WorkerEnding ending = RunCommand(L"if exist here.txt (exit 5) else (exit 6)");
  std::filesystem::current_path(previous);
  EXPECT_EQ(ending.code, 5u);
}

TEST_F(SupervisorTest, ProgramThatIsNotThereIsAnErrorLineAndEndsTheRun) {
  ProcessLauncher launcher(PathOf(L"none.exe"));
  RunSupervisor(launcher, L"none", ProcessRunLog());
  EXPECT_EQ(Complaints(), Lines{"#ERROR# - CreateProcess failed (2)"});
  EXPECT_TRUE(pauses().empty());
}

}  // namespace
}  // namespace larkspan
