// The one window that the program shows, found, read and closed as a user would.
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <string>

#include "tests/support/Program.h"

namespace larkspan::testing {
namespace {

struct BoxSearch {
  DWORD processId;
  HWND box;
};

BOOL CALLBACK LookAtWindow(HWND window, LPARAM context) {
  auto& search = *reinterpret_cast<BoxSearch*>(context);
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  std::array<wchar_t, 64> caption{};
  GetWindowTextW(window, caption.data(), static_cast<int>(caption.size()));
  if (processId == search.processId && std::wstring(caption.data()) == L"Larkspan") {
    search.box = window;
  }
  return TRUE;
}

// Waits for the box of the process; null when the process has none after half a minute.
HWND FindBox(DWORD processId) {
  BoxSearch search{processId, nullptr};
  for (int i = 0; i < 600 && search.box == nullptr; ++i) {
    EnumWindows(LookAtWindow, reinterpret_cast<LPARAM>(&search));
    if (search.box == nullptr) Sleep(50);
  }
  return search.box;
}

std::wstring StaticText(HWND box) {
  std::array<wchar_t, 256> text{};
  HWND label = nullptr;
  while (text[0] == L'\0' && (label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr) {
    GetWindowTextW(label, text.data(), static_cast<int>(text.size()));
  }
  return text.data();
}

// The box has its caption before it has its text.
std::wstring AwaitStaticText(HWND box) {
  std::wstring text;
  for (int i = 0; i < 600 && (text = StaticText(box)).empty(); ++i) Sleep(50);
  return text;
}

class VersionBoxSystemTest : public ::testing::TestWithParam<const wchar_t*> {};

TEST_P(VersionBoxSystemTest, ShowsTheVersionWithAnOkButtonAndNoOwner) {
  const std::wstring executable = ProgramFolder() + L"\\larkspan.exe";
  // An export is asked for as well: the version wins over it.
  Program program(executable,
                  BuildCommandLine({executable, L"-p", L"x.nsf", L"-scan", GetParam()}));
  const HWND box = FindBox(program.processId());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(AwaitStaticText(box), L"" LARKSPAN_VERSION);
  EXPECT_EQ(GetWindow(box, GW_OWNER), nullptr);
  EXPECT_NE(GetDlgItem(box, IDOK), nullptr);
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_EQ(program.WaitForEnd().exitCode, 0u);
}

INSTANTIATE_TEST_SUITE_P(BothWords, VersionBoxSystemTest, ::testing::Values(L"-v", L"-VERSION"));

// The one for files that fail is built without resources.
TEST(VersionlessProgramSystemTest, ShowsNothingAndEndsLikeAnother) {
  const std::wstring executable = ProgramFolder() + L"\\larkspan_faulty.exe";
  const ProgramResult result =
      Program(executable, BuildCommandLine({executable, L"-version"})).WaitForEnd();
  EXPECT_EQ(result.exitCode, 0u);
}

}  // namespace
}  // namespace larkspan::testing
