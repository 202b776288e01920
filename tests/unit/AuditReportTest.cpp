#include "report/AuditReport.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/Utf8Check.h"

namespace larkspan {
namespace {

class AuditReportTest : public OutputFolderTest {
 protected:
  std::string AuditBytes() const { return ReadBytes(audit_); }

  const std::wstring audit_ = PathOf(L"audit.txt");
};

TEST_F(AuditReportTest, TextIsWrittenAsFormatted) {
  Audit(L"Set user to: %s\n", L"Jo");
  EXPECT_EQ(AuditBytes(), "Set user to: Jo\r\n");
}

TEST_F(AuditReportTest, TextIsAppendedToWhatIsThere) {
  WriteBytes(audit_, "earlier\r\n");
  Audit(L"later %d\n", 5);
  EXPECT_EQ(AuditBytes(), "earlier\r\nlater 5\r\n");
}

TEST_F(AuditReportTest, FileIsNotKeptOpenBetweenTexts) {
  Audit(L"one\n");
  WriteBytes(audit_, "");
  Audit(L"two\n");
  EXPECT_EQ(AuditBytes(), "two\r\n");
}

TEST_F(AuditReportTest, TextIsUtf8) {
  Audit(L"%s\n", L"\u00E9\u03A9\u65E5\U0001F600");
  EXPECT_EQ(AuditBytes(), "\xC3\xA9\xCE\xA9\xE6\x97\xA5\xF0\x9F\x98\x80\r\n");
}

TEST_F(AuditReportTest, TextOfManyLinesIsOneWrite) {
  Audit(L"one\ntwo\n");
  EXPECT_EQ(AuditBytes(), "one\r\ntwo\r\n");
}

TEST_F(AuditReportTest, TextOf1023CharactersIsWhole) {
  Audit(L"%s\n", std::wstring(1022, L'a').c_str());
  EXPECT_EQ(AuditBytes(), std::string(1022, 'a') + "\r\n");
}

TEST_F(AuditReportTest, LongerTextIsCutAndKeepsItsLineEnd) {
  Audit(L"%s\n", std::wstring(5000, L'a').c_str());
  EXPECT_EQ(AuditBytes(), std::string(1022, 'a') + "\r\n");
}

TEST_F(AuditReportTest, LongUtf8IsCutTo1023BytesAndKeepsItsLineEnd) {
  Audit(L"%s\n", std::wstring(600, L'\u00E9').c_str());
  std::string expected;
  for (int i = 0; i < 511; ++i) expected += "\xC3\xA9";
  EXPECT_EQ(AuditBytes(), expected + "\r\n");
}

TEST_F(AuditReportTest, CutNeverSplitsACharacter) {
  for (const std::wstring start : {L"", L"a", L"aa", L"aaa"}) {
    std::wstring text = start;
    for (int i = 0; i < 600; ++i) text += L"\U0001F600";
    Audit(L"%s\n", text.c_str());
  }
  EXPECT_TRUE(IsWholeUtf8(AuditBytes()));
}

TEST_F(AuditReportTest, MissingOutputFolderIsSilent) {
  UseOutputFolder(L"missing");
  Audit(L"lost\n");
  EXPECT_FALSE(Exists(PathOf(L"missing")));
}

TEST_F(AuditReportTest, FolderInTheWayIsSilent) {
  MakeFolder(audit_);
  Audit(L"lost\n");
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(AuditReportTest, NothingIsLogged) {
  Audit(L"text\n");
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
