#include "supervision/EndSignal.h"

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <string>

#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

const std::wstring kFolder = L"C:\\out";

// In these tests the process is its own parent.
HANDLE WINAPI TakeNoSnapshot(DWORD, DWORD) { return INVALID_HANDLE_VALUE; }

DWORD parentId = 0;

BOOL WINAPI TellParent(HANDLE, PROCESSENTRY32W* entry) {
  entry->th32ProcessID = GetCurrentProcessId();
  entry->th32ParentProcessID = parentId;
  return TRUE;
}

class EndSignalTest : public testing::Test {
 protected:
  EndSignalTest() { parentId = GetCurrentProcessId(); }

  const ReplacedEntryPoint first_{"KERNEL32.dll", "Process32FirstW", TellParent};
};

TEST_F(EndSignalTest, IsGivenOnlyByTheWorker) {
  const EndSignal signal(kFolder, 0x100);
  EXPECT_TRUE(signal.IsAvailable());
  const EndSignalGiver giver(kFolder, 0x100);
  EXPECT_FALSE(signal.IsGiven());
  giver.Give();
  EXPECT_TRUE(signal.IsGiven());
}

TEST_F(EndSignalTest, OfAnEarlierWorkerIsNotThatOfTheNext) {
  {
    const EndSignal earlier(kFolder, 0x100);
    EndSignalGiver(kFolder, 0x100).Give();
  }
  EXPECT_FALSE(EndSignal(kFolder, 0x100).IsGiven());
}

TEST_F(EndSignalTest, OfAnotherWorkerIsAnother) {
  const EndSignal signal(kFolder, 0x100);
  EndSignalGiver(kFolder, 0x101).Give();
  EndSignalGiver(kFolder + L"2", 0x100).Give();
  EndSignalGiver(L"C:\\ouT", 0x100).Give();
  EXPECT_FALSE(signal.IsGiven());
}

TEST_F(EndSignalTest, OfAnotherSupervisorIsAnother) {
  const EndSignal signal(kFolder, 0x100);
  parentId = GetCurrentProcessId() + 4;
  EndSignalGiver(kFolder, 0x100).Give();
  EXPECT_FALSE(signal.IsGiven());
}

TEST_F(EndSignalTest, ThatSomebodyElseHasMadeIsNotAvailable) {
  const EndSignal signal(kFolder, 0x100);
  EndSignalGiver(kFolder, 0x100).Give();
  const EndSignal second(kFolder, 0x100);
  EXPECT_FALSE(second.IsAvailable());
  EXPECT_FALSE(second.IsGiven());
}

SECURITY_ATTRIBUTES* attributesOfTheEvent = nullptr;

HANDLE WINAPI CreateNoEvent(SECURITY_ATTRIBUTES* attributes, BOOL, BOOL, const wchar_t*) {
  attributesOfTheEvent = attributes;
  return nullptr;
}

TEST_F(EndSignalTest, WithoutAnEventIsNotAvailable) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateEventW", CreateNoEvent);
  const EndSignal signal(kFolder, 0x100);
  EXPECT_FALSE(signal.IsAvailable());
  EXPECT_FALSE(signal.IsGiven());
}

TEST_F(EndSignalTest, IsInheritedByNoProcess) {
  SECURITY_ATTRIBUTES some{};
  attributesOfTheEvent = &some;
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateEventW", CreateNoEvent);
  const EndSignal signal(kFolder, 0x100);
  EXPECT_EQ(attributesOfTheEvent, nullptr);
}

BOOL inheritsTheOpened = TRUE;

HANDLE WINAPI OpenNoEvent(DWORD, BOOL inherits, const wchar_t*) {
  inheritsTheOpened = inherits;
  return nullptr;
}

TEST_F(EndSignalTest, IsInheritedByNothingThatTheWorkerStarts) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "OpenEventW", OpenNoEvent);
  const EndSignalGiver giver(kFolder, 0x100);
  EXPECT_FALSE(inheritsTheOpened);
}

BOOL WINAPI SetNoEvent(HANDLE) {
  ADD_FAILURE() << "an event is set";
  return FALSE;
}

TEST_F(EndSignalTest, WithoutASupervisorNothingIsSet) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "SetEvent", SetNoEvent);
  EndSignalGiver(kFolder, 0x100).Give();
}

TEST_F(EndSignalTest, WithoutAListOfProcessesNothingIsSet) {
  const EndSignal signal(kFolder, 0x100);
  const ReplacedEntryPoint snapshot("KERNEL32.dll", "CreateToolhelp32Snapshot", TakeNoSnapshot);
  EndSignalGiver(kFolder, 0x100).Give();
  EXPECT_FALSE(signal.IsGiven());
}

}  // namespace
}  // namespace larkspan
