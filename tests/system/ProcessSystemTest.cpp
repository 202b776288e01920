// The program as a process: what it is started with, and what its workers inherit.
#include <windows.h>

#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class ProcessSystemTest : public SystemTest {
 protected:
  void SetUp() override { run_.AddDatabase(L"two.nsf", DocumentsJson(2)); }
};

std::uint32_t NumberAt(const std::string& bytes, std::size_t offset, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = size; i-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(bytes.at(offset + i));
  }
  return number;
}

TEST_F(ProcessSystemTest, TheProgramIsAWindowlessOne) {
  constexpr std::size_t kHeaderOffset = 0x3C;
  constexpr std::size_t kSubsystemOffset = 0x5C;
  constexpr std::uint32_t kWindowsWithoutConsole = 2;
  const std::string bytes = ReadBytes(run_.Executable());
  const std::uint32_t header = NumberAt(bytes, kHeaderOffset, 4);
  EXPECT_EQ(NumberAt(bytes, header + kSubsystemOffset, 2), kWindowsWithoutConsole);
}

TEST_F(ProcessSystemTest, WorkersAreStartedFromTheProgramsOwnFileWhateverTheFirstWordSays) {
  std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive"});
  line.replace(0, line.find(L" ="), L"no-such-program");
  EXPECT_EQ(Program(run_.Executable(), line).WaitForEnd().exitCode, 0u);
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(ProcessSystemTest, WithoutAnybodyWhoReadsTheProgressEverythingIsExported) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive"});
  ASSERT_TRUE(CreateProcessW(run_.Executable().c_str(), line.data(), nullptr, nullptr, FALSE,
                             DETACHED_PROCESS, nullptr, nullptr, &startup, &process));
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ProcessSystemTest, WorkersKeepTheCurrentFolder) {
  run_.SetOutput(L"out");
  std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive"});
  run_.SetOutput(run_.folder() + L"\\out");
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(CreateProcessW(run_.Executable().c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                             nullptr, run_.folder().c_str(), &startup, &process));
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(ProcessSystemTest, ALaterWorkerInheritsTheStopPipeToo) {
  run_.AddDatabase(L"slow.nsf",
                   DocumentsJson(60, FaultsMember(
                                         R"({"entry": "DXLExportNote", "note": "00000902",
                                             "action": "accessViolation"},
                                            {"entry": "DXLExportNote", "wait": 100})")));
  StopPipe pipe;
  Program program(run_.Executable(),
                  run_.CommandLine(L"slow.nsf", {L"-archive", L"-pipe", pipe.HandleText()}));
  pipe.CloseReadEnd();
  ASSERT_TRUE(program.ReadUntil("PROGRESS: Opening ", 2));
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 3));
  pipe.Close();
  program.WaitForEnd();
  EXPECT_LT(FilesIn("data").size(), 59u);
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

}  // namespace
}  // namespace larkspan::testing
