// Real processes: the system's own command interpreter stands in for the program.
#include "app/WorkerLauncher.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "tests/support/FileBytes.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/ScopedEnvironmentVariable.h"
#include "tests/support/SupervisorTest.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

std::wstring CommandInterpreter() {
  wchar_t folder[MAX_PATH] = {};
  GetSystemDirectoryW(folder, MAX_PATH);
  return std::wstring(folder) + L"\\cmd.exe";
}

// Lets the interpreter run a command that ends with an exit code.
WorkerEnding RunCommand(const std::wstring& command) {
  return ProcessLauncher(CommandInterpreter()).RunToEnd(L"cmd /c " + command);
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
  const WorkerEnding ending =
      ProcessLauncher(folder_ / L"\\none.exe").RunToEnd(L"none -l 00000000");
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_EQ(ending.code, DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(WorkerLauncherTest, FileThatIsNoProgramIsNotCreated) {
  WriteBytes(folder_ / L"\\text.exe", "a text");
  const WorkerEnding ending = ProcessLauncher(folder_ / L"\\text.exe").RunToEnd(L"text");
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_EQ(ending.code, DWORD{ERROR_BAD_EXE_FORMAT});
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
  RunSupervisor(launcher, L"none");
  EXPECT_EQ(Complaints(), Lines{"#ERROR# - CreateProcess failed (2)"});
  EXPECT_TRUE(pauses().empty());
}

}  // namespace
}  // namespace larkspan
