#include "report/ReportText.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

class ReportTextTest : public testing::Test {
 protected:
  const TempFolder folder_;
  const std::wstring path_ = folder_ / L"\\report.txt";
};

TEST_F(ReportTextTest, TextIsAppendedInUtf8WithItsLineEnds) {
  AppendReportText(path_, L"a \u00E9\n");
  AppendReportText(path_, L"b\n");
  EXPECT_EQ(ReadBytes(path_), "a \xC3\xA9\r\nb\r\n");
}

TEST_F(ReportTextTest, TextIsCutToALineBuffer) {
  AppendReportText(path_, std::wstring(5000, L'a') + L"\n");
  EXPECT_EQ(ReadBytes(path_), std::string(1022, 'a') + "\r\n");
}

TEST_F(ReportTextTest, FileThatCannotBeOpenedDropsTheText) {
  MakeFolder(path_);
  AppendReportText(path_, L"a\n");
  EXPECT_TRUE(Exists(path_));
}

TEST_F(ReportTextTest, TextsOfSeveralThreadsStayWhole) {
  const auto appendLines = [this] {
    for (int i = 0; i < 100; ++i) AppendReportText(path_, L"0123456789\n");
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(appendLines);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ReadLines(path_), std::vector<std::string>(400, "0123456789"));
}

}  // namespace
}  // namespace larkspan
