#include "app/EndSignal.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan {
namespace {

constexpr wchar_t kVariable[] = L"LARKSPAN_END_SIGNAL";

bool HasVariable() {
  wchar_t first = 0;
  return GetEnvironmentVariableW(kVariable, &first, 1) != 0;
}

TEST(EndSignalTest, IsGivenOnlyByTheWorker) {
  const EndSignal signal;
  EXPECT_TRUE(signal.IsAvailable());
  EXPECT_FALSE(signal.IsGiven());
  GiveEndSignal();
  EXPECT_TRUE(signal.IsGiven());
}

TEST(EndSignalTest, OfAnEarlierWorkerIsNotThatOfTheNext) {
  {
    const EndSignal earlier;
    GiveEndSignal();
  }
  EXPECT_FALSE(EndSignal().IsGiven());
}

TEST(EndSignalTest, LeavesTheEnvironmentAsItWas) {
  {
    const EndSignal signal;
    EXPECT_TRUE(HasVariable());
  }
  EXPECT_FALSE(HasVariable());
}

TEST(EndSignalTest, HandleIsInheritable) {
  const EndSignal signal;
  wchar_t number[24] = {};
  ASSERT_NE(GetEnvironmentVariableW(kVariable, number, 24), 0u);
  DWORD flags = 0;
  const auto handle = reinterpret_cast<HANDLE>(std::wcstoull(number, nullptr, 10));
  ASSERT_TRUE(GetHandleInformation(handle, &flags));
  EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, DWORD{HANDLE_FLAG_INHERIT});
}

TEST(EndSignalTest, HandleIsClosed) {
  wchar_t number[24] = {};
  {
    const EndSignal signal;
    ASSERT_NE(GetEnvironmentVariableW(kVariable, number, 24), 0u);
  }
  DWORD flags = 0;
  const auto handle = reinterpret_cast<HANDLE>(std::wcstoull(number, nullptr, 10));
  EXPECT_FALSE(GetHandleInformation(handle, &flags));
}

HANDLE WINAPI CreateNoEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, const wchar_t*) { return nullptr; }

TEST(EndSignalTest, WithoutAnEventIsNotAvailable) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateEventW", CreateNoEvent);
  const EndSignal signal;
  EXPECT_FALSE(signal.IsAvailable());
  EXPECT_FALSE(signal.IsGiven());
  EXPECT_FALSE(HasVariable());
}

BOOL WINAPI SetNoEvent(HANDLE) {
  ADD_FAILURE() << "an event is set";
  return FALSE;
}

TEST(EndSignalTest, WithoutASupervisorNothingIsSet) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "SetEvent", SetNoEvent);
  GiveEndSignal();
}

TEST(EndSignalTest, NumberThatIsNoHandleIsHarmless) {
  const ScopedEnvironmentVariable variable(kVariable, L"not a number");
  GiveEndSignal();
}

}  // namespace
}  // namespace larkspan
