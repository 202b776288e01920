// Starts a program in its own console, and gives that console another width when it is told one.
// Wine learns the width of its terminal at the start only, so a test that makes the window narrower
// says so through a file as well: its first line is the width, and the file goes when it is done.
//
//   larkspan_terminal_host WIDTH_FILE PROGRAM [ARGUMENT ...]
#include <windows.h>

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>

namespace larkspan {
namespace {

// The program is the one that a key is for.
BOOL WINAPI IgnoreKeys(DWORD) { return TRUE; }

// The width can be neither more than that of the buffer nor less than that of the window.
void SetWidth(SHORT columns) {
  HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
  CONSOLE_SCREEN_BUFFER_INFO info;
  GetConsoleScreenBufferInfo(console, &info);
  SMALL_RECT window = info.srWindow;
  window.Right = static_cast<SHORT>(window.Left + columns - 1);
  SetConsoleWindowInfo(console, TRUE, &window);
  SetConsoleScreenBufferSize(console, {columns, info.dwSize.Y});
  SetConsoleWindowInfo(console, TRUE, &window);
}

void ObeyFile(const std::filesystem::path& file) {
  SHORT columns = 0;
  if (!(std::ifstream(file) >> columns)) return;
  SetWidth(columns);
  std::filesystem::remove(file);
}

// What stands behind an argument in the command line, as it was given.
std::wstring CommandBehind(const wchar_t* argument) {
  const wchar_t* behind = std::wcsstr(GetCommandLineW(), argument) + std::wcslen(argument);
  return behind + std::wcsspn(behind, L"\" ");
}

DWORD RunProgram(std::wstring command, const std::filesystem::path& widthFile) {
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                      &startup, &process))
    return 127;
  while (WaitForSingleObject(process.hProcess, 50) == WAIT_TIMEOUT) ObeyFile(widthFile);
  DWORD code = 127;
  GetExitCodeProcess(process.hProcess, &code);
  return code;
}

}  // namespace
}  // namespace larkspan

int wmain(int count, wchar_t** arguments) {
  if (count < 3) return 127;
  SetConsoleCtrlHandler(larkspan::IgnoreKeys, TRUE);
  return static_cast<int>(
      larkspan::RunProgram(larkspan::CommandBehind(arguments[1]), arguments[1]));
}
