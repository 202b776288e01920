#include <gtest/gtest.h>

#include "base/Utf8.h"
#include "console/doctor/ProgramChecks.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

constexpr char kNameOne[] = "Name the notes.ini of this machine's Notes with --notes-ini.";

class ConfigurationCheckTest : public ::testing::Test {
 protected:
  ConfigurationCheckTest() { facts_.library = folder_ / L"\\nnotes.dll"; }

  CheckFinding CheckNamed(const std::string& text) {
    WriteBytes(path_, text);
    request_.run.notesIni = WideToUtf8(path_);
    return CheckConfiguration(request_, facts_);
  }

  TempFolder folder_{L"larkspan-ini"};
  std::wstring path_ = folder_ / L"\\x.ini";
  DoctorRequest request_;
  ProgramFacts facts_;
};

TEST_F(ConfigurationCheckTest, OneWithItsKeysIsGood) {
  const CheckFinding finding = CheckNamed("[Notes]\r\nDIRECTORY=C:\\x\r\nKeyFilename=a.id\r\n");
  EXPECT_EQ(finding.result, CheckResult::kPassed);
  EXPECT_EQ(finding.detail, WideToUtf8(path_));
}

TEST_F(ConfigurationCheckTest, AKeyThatIsMissingIsAWarning) {
  EXPECT_EQ(CheckNamed("Directory=.\nKeyFilename\n").detail,
            WideToUtf8(path_) + ": it does not set KeyFilename");
  EXPECT_EQ(CheckNamed("[Notes]\n").detail,
            WideToUtf8(path_) + ": it does not set Directory and KeyFilename");
  EXPECT_EQ(CheckNamed("").result, CheckResult::kWarning);
}

TEST_F(ConfigurationCheckTest, OneThatIsNotThereFails) {
  request_.run.notesIni = WideToUtf8(folder_ / L"\\none.ini");
  const CheckFinding finding = CheckConfiguration(request_, facts_);
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, WideToUtf8(folder_ / L"\\none.ini") + " is not there");
  EXPECT_EQ(finding.advice, kNameOne);
}

TEST_F(ConfigurationCheckTest, AFolderCannotBeRead) {
  request_.run.notesIni = WideToUtf8(folder_.path());
  EXPECT_EQ(CheckConfiguration(request_, facts_).detail,
            WideToUtf8(folder_.path()) + " cannot be read");
}

TEST_F(ConfigurationCheckTest, OneOutsideTheAnsiCodePageDoesNotComeThrough) {
  path_ = folder_ / L"\\\u65E5\u672C.ini";
  const CheckFinding finding = CheckNamed("Directory=.\nKeyFilename=a\n");
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_NE(finding.detail.find("does not come through to the library"), std::string::npos);
}

TEST_F(ConfigurationCheckTest, APathOfMoreThan258BytesDoesNotComeThrough) {
  std::wstring folder = folder_.path();
  while (folder.size() < 200)
    folder += L"\\..\\" + folder_.path().substr(folder_.path().rfind(L'\\') + 1);
  folder += L"\\";
  std::wstring given = folder + std::wstring(258 - folder.size() - 5, L'.') + L"x.ini";
  // The dots would be taken away: what is named is the same file by a longer way.
  given = folder;
  while (given.size() < 252) given += L".\\";
  path_ = given + std::wstring(258 - given.size() - 4, L'i') + L".ini";
  ASSERT_EQ(path_.size(), 258u);
  EXPECT_EQ(CheckNamed("Directory=.\nKeyFilename=a\n").result, CheckResult::kPassed);
  path_.insert(folder.size(), L".\\");
  EXPECT_EQ(CheckNamed("Directory=.\nKeyFilename=a\n").result, CheckResult::kFailed);
}

TEST_F(ConfigurationCheckTest, WithoutANameTheOneBesideTheLibraryCounts) {
  WriteBytes(folder_ / L"\\notes.ini", "Directory=.\nKeyFilename=a\n");
  const CheckFinding finding = CheckConfiguration(request_, facts_);
  EXPECT_EQ(finding.result, CheckResult::kPassed);
  EXPECT_EQ(finding.detail, WideToUtf8(folder_ / L"\\notes.ini") + ", beside nnotes.dll");
}

TEST_F(ConfigurationCheckTest, WithoutAnyItIsTheLibrarysToFind) {
  const CheckFinding finding = CheckConfiguration(request_, facts_);
  EXPECT_EQ(finding.result, CheckResult::kNotTried);
  EXPECT_EQ(finding.detail,
            "none is named, and none lies beside nnotes.dll: the library looks for one by itself, "
            "and its start tells whether it finds one");
  facts_.library.clear();
  EXPECT_EQ(CheckConfiguration(request_, facts_).result, CheckResult::kNotTried);
}

}  // namespace
}  // namespace larkspan::console
