#include "console/doctor/OutputChecks.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "base/Utf8.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

constexpr std::uint64_t kMegabyte = std::uint64_t{1} << 20;

class OutputChecksTest : public ::testing::Test {
 protected:
  ~OutputChecksTest() override { EXPECT_EQ(Entries(), entries_) << "something is left"; }

  std::ptrdiff_t Entries() const {
    return std::distance(std::filesystem::recursive_directory_iterator(folder_.path()), {});
  }
  void Put(const std::wstring& name) {
    WriteBytes(folder_ / name, "x");
    ++entries_;
  }

  std::string Name(const std::wstring& name = L"") const { return WideToUtf8(folder_ / name); }

  TempFolder folder_;
  std::ptrdiff_t entries_ = 0;
};

TEST_F(OutputChecksTest, AnEmptyFolderIsGood) {
  const CheckFinding finding = CheckFolder(folder_.path());
  EXPECT_EQ(finding.result, CheckResult::kPassed) << finding.detail;
  EXPECT_EQ(finding.detail, Name() + " can be written to");
}

TEST_F(OutputChecksTest, AFolderThatCanBeMadeIsGoodAndIsNotMade) {
  const CheckFinding finding = CheckFolder(folder_ / L"\\a\\b");
  EXPECT_EQ(finding.result, CheckResult::kPassed) << finding.detail;
  EXPECT_EQ(finding.detail, Name() + " can be written to");
}

TEST_F(OutputChecksTest, AFolderThatHoldsSomethingIsNot) {
  Put(L"\\desktop.ini");
  const CheckFinding finding = CheckFolder(folder_.path());
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, Name() + " is not empty");
  EXPECT_EQ(finding.advice, "Name a folder with --out that is empty or not there.");
}

TEST_F(OutputChecksTest, AFileIsNot) {
  Put(L"\\file");
  const CheckFinding finding = CheckFolder(folder_ / L"\\file");
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, Name(L"\\file") + " is a file");
  EXPECT_EQ(finding.advice, "Name another folder with --out.");
}

TEST_F(OutputChecksTest, ADriveThatIsNotThereIsNot) {
  const CheckFinding finding = CheckFolder(L"Q:\\export");
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, "Q:\\export: there is no such drive");
}

TEST_F(OutputChecksTest, AFolderThatTakesNoFolderIsNot) {
  const FileFaults faults("folder * * accessDenied");
  const CheckFinding finding = CheckFolder(folder_ / L"\\a");
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, Name() + " cannot be written to");
  EXPECT_EQ(finding.advice,
            "Give this user the right to make files and folders there, or name another folder with "
            "--out.");
}

TEST_F(OutputChecksTest, AFolderThatTakesNoFileIsNot) {
  const FileFaults faults("write probe.tmp 1 diskFull");
  EXPECT_EQ(CheckFolder(folder_.path()).detail, Name() + " cannot be written to");
}

UINT WINAPI TellANetworkDrive(const wchar_t*) { return DRIVE_REMOTE; }

TEST_F(OutputChecksTest, ANetworkDriveIsTold) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetDriveTypeW", TellANetworkDrive);
  EXPECT_EQ(CheckFolder(folder_.path()).detail, Name() + " can be written to, on a network drive");
}

TEST_F(OutputChecksTest, TheNearestFolderIsOneThatIsThere) {
  EXPECT_EQ(NearestFolder(folder_ / L"\\a\\b\\c"), folder_.path());
  EXPECT_EQ(NearestFolder(folder_.path()), folder_.path());
  EXPECT_EQ(NearestFolder(L"C:\\"), L"C:\\");
  EXPECT_EQ(NearestFolder(L"C:\\no such folder"), L"C:\\");
  EXPECT_EQ(NearestFolder(L"Q:\\a"), L"");
  EXPECT_EQ(NearestFolder(L"\\\\?\\C:\\no such folder\\a"), L"\\\\?\\C:\\");
}

TEST_F(OutputChecksTest, TheRoomIsThatOfTheDisk) {
  const CheckFinding finding = CheckSpace(folder_ / L"\\a", std::nullopt);
  EXPECT_EQ(finding.result, CheckResult::kPassed) << finding.detail;
  EXPECT_NE(finding.detail.find(" free; no size of a database to hold it against"),
            std::string::npos);
}

BOOL WINAPI TellNoSpace(const wchar_t*, ULARGE_INTEGER*, ULARGE_INTEGER*, ULARGE_INTEGER*) {
  return FALSE;
}

TEST_F(OutputChecksTest, ARoomThatIsNotToldIsAWarning) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetDiskFreeSpaceExW", TellNoSpace);
  const CheckFinding finding = CheckSpace(folder_.path(), std::nullopt);
  EXPECT_EQ(finding.result, CheckResult::kWarning);
  EXPECT_EQ(finding.detail, "the system does not tell it");
}

TEST(JudgeSpaceTest, LessThanAnExportRunsWithFails) {
  for (const std::optional<std::uint64_t> size : {std::optional<std::uint64_t>(), {kMegabyte}}) {
    const CheckFinding finding = JudgeSpace(64 * kMegabyte - 1, size);
    EXPECT_EQ(finding.result, CheckResult::kFailed);
    EXPECT_EQ(finding.detail, "64.0 MB free, and an export ends itself below 64.0 MB");
  }
}

TEST(JudgeSpaceTest, LessThanTheDatabaseFails) {
  const CheckFinding finding = JudgeSpace(300 * kMegabyte - 1, 300 * kMegabyte);
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, "300.0 MB free, and the database has 300.0 MB");
  EXPECT_EQ(finding.advice, "Make room on that disk, or name a folder on another one with --out.");
}

TEST(JudgeSpaceTest, LessThanTwiceTheDatabaseIsAWarning) {
  EXPECT_EQ(JudgeSpace(300 * kMegabyte, 300 * kMegabyte).result, CheckResult::kWarning);
  EXPECT_EQ(JudgeSpace(600 * kMegabyte - 1, 300 * kMegabyte).result, CheckResult::kWarning);
  EXPECT_EQ(JudgeSpace(600 * kMegabyte, 300 * kMegabyte).result, CheckResult::kPassed);
}

TEST(CheckPathsTest, AnArchiveHasRoomBelowAFolderOf236Characters) {
  const std::wstring longest = L"C:\\" + std::wstring(233, L'a');
  const CheckFinding good = CheckPaths(longest);
  EXPECT_EQ(good.result, CheckResult::kPassed);
  EXPECT_EQ(good.detail, "paths of up to 259 characters; the system takes 259 at most");
  const CheckFinding bad = CheckPaths(longest + L"a");
  EXPECT_EQ(bad.result, CheckResult::kFailed);
  EXPECT_EQ(bad.detail, "paths of up to 260 characters; the system takes 259 at most");
  EXPECT_EQ(bad.advice,
            "Name a folder with a path of 236 characters at most, or enable long paths on this "
            "machine.");
}

BOOLEAN WINAPI AllMayBeLong() { return TRUE; }

FARPROC WINAPI TellThatAllMayBeLong(HMODULE, const char*) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(AllMayBeLong));
}

TEST(CheckPathsTest, WhereLongPathsAreEnabledAnyLengthIsGood) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetProcAddress", TellThatAllMayBeLong);
  const CheckFinding finding = CheckPaths(L"C:\\" + std::wstring(300, L'a'));
  EXPECT_EQ(finding.result, CheckResult::kPassed);
  EXPECT_EQ(finding.detail, "paths of up to 326 characters; the system takes long ones");
}

TEST(CheckPathsTest, APathThatTheSystemTakesAsItStandsMayBeLong) {
  const CheckFinding finding = CheckPaths(L"\\\\?\\C:\\" + std::wstring(300, L'a'));
  EXPECT_EQ(finding.result, CheckResult::kPassed);
  EXPECT_EQ(finding.detail, "paths of up to 330 characters; the system takes long ones");
}

}  // namespace
}  // namespace larkspan::console
