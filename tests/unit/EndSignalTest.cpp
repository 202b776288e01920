#include "supervision/EndSignal.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cwchar>

#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan {
namespace {

constexpr wchar_t kVariable[] = L"LARKSPAN_END_SIGNAL";

bool HasVariable() {
  wchar_t first = 0;
  return GetEnvironmentVariableW(kVariable, &first, 1) != 0;
}

HANDLE EventOfVariable() {
  wchar_t number[24] = {};
  GetEnvironmentVariableW(kVariable, number, 24);
  return reinterpret_cast<HANDLE>(std::wcstoull(number, nullptr, 10));
}

bool IsInheritable(HANDLE handle) {
  DWORD flags = 0;
  EXPECT_TRUE(GetHandleInformation(handle, &flags));
  return (flags & HANDLE_FLAG_INHERIT) != 0;
}

TEST(EndSignalTest, IsGivenOnlyByTheWorker) {
  const EndSignal signal;
  EXPECT_TRUE(signal.IsAvailable());
  const EndSignalGiver giver;
  EXPECT_FALSE(signal.IsGiven());
  giver.Give();
  EXPECT_TRUE(signal.IsGiven());
}

TEST(EndSignalTest, OfAnEarlierWorkerIsNotThatOfTheNext) {
  {
    const EndSignal earlier;
    EndSignalGiver().Give();
  }
  EXPECT_FALSE(EndSignal().IsGiven());
}

TEST(EndSignalTest, VariableStandsForAsLongAsItLives) {
  {
    const EndSignal signal;
    EXPECT_TRUE(HasVariable());
  }
  EXPECT_FALSE(HasVariable());
}

TEST(EndSignalTest, IsInheritedByTheWorkerAndNoFurther) {
  const EndSignal signal;
  const HANDLE event = EventOfVariable();
  EXPECT_TRUE(IsInheritable(event));
  const EndSignalGiver giver;
  EXPECT_FALSE(IsInheritable(event));
  EXPECT_FALSE(HasVariable());
}

TEST(EndSignalTest, HandleIsClosed) {
  HANDLE event = nullptr;
  {
    const EndSignal signal;
    event = EventOfVariable();
  }
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(event, &flags));
}

HANDLE WINAPI CreateNoEvent(SECURITY_ATTRIBUTES*, BOOL, BOOL, const wchar_t*) { return nullptr; }

TEST(EndSignalTest, WithoutAnEventIsNotAvailable) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateEventW", CreateNoEvent);
  const EndSignal signal;
  EXPECT_FALSE(signal.IsAvailable());
  EXPECT_FALSE(signal.IsGiven());
  EXPECT_FALSE(HasVariable());
}

BOOL WINAPI SetNoVariable(const wchar_t*, const wchar_t*) { return FALSE; }

TEST(EndSignalTest, WithoutAVariableIsNotAvailable) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "SetEnvironmentVariableW", SetNoVariable);
  EXPECT_FALSE(EndSignal().IsAvailable());
}

BOOL WINAPI SetNoEvent(HANDLE) {
  ADD_FAILURE() << "an event is set";
  return FALSE;
}

TEST(EndSignalTest, WithoutASupervisorNothingIsSet) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "SetEvent", SetNoEvent);
  EndSignalGiver().Give();
}

TEST(EndSignalTest, NumberThatIsNoHandleIsNotSet) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "SetEvent", SetNoEvent);
  const ScopedEnvironmentVariable variable(kVariable, L"123456789");
  EndSignalGiver().Give();
}

}  // namespace
}  // namespace larkspan
