#include "console/page/WritePage.h"

#include <gtest/gtest.h>

#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class WritePageTest : public ::testing::Test {
 protected:
  TempFolder folder_;
  const std::wstring file_ = folder_ / L"\\page.html";
  const std::wstring stage_ = folder_ / L"\\page.html.new";
};

TEST_F(WritePageTest, ThePageIsThereByteForByte) {
  EXPECT_TRUE(WritePage(file_, "line\nline\r\n"));
  EXPECT_EQ(ReadBytes(file_), "line\nline\r\n");
  EXPECT_FALSE(Exists(stage_));
}

TEST_F(WritePageTest, AnEarlierPageIsReplaced) {
  WriteBytes(file_, "an earlier and longer page");
  EXPECT_TRUE(WritePage(file_, "new"));
  EXPECT_EQ(ReadBytes(file_), "new");
}

TEST_F(WritePageTest, AnEarlierPageStaysWhenTheNewOneCannotBeWritten) {
  for (const char* const fault :
       {"open page.html.new 1 accessDenied", "write page.html.new 1 diskFull 10",
        "close page.html.new 1 diskFull", "move page.html 1 sharingViolation"}) {
    WriteBytes(file_, "earlier");
    const FileFaults faults(fault);
    EXPECT_FALSE(WritePage(file_, "a page that is longer than ten bytes")) << fault;
    EXPECT_EQ(ReadBytes(file_), "earlier") << fault;
    EXPECT_FALSE(Exists(stage_)) << fault;
  }
}

TEST_F(WritePageTest, AMissingFolderIsToldAsAFailure) {
  EXPECT_FALSE(WritePage(folder_ / L"\\missing\\page.html", "page"));
}

TEST(LiesInsideTest, APathIsComparedAsTheSystemSeesIt) {
  EXPECT_TRUE(LiesInside(L"C:\\out\\page.html", L"C:\\out"));
  EXPECT_TRUE(LiesInside(L"c:/OUT/data/page.html", L"C:\\out\\"));
  EXPECT_TRUE(LiesInside(L"C:\\other\\..\\out\\page.html", L"C:\\out"));
  EXPECT_FALSE(LiesInside(L"C:\\out.html", L"C:\\out"));
  EXPECT_FALSE(LiesInside(L"C:\\output\\page.html", L"C:\\out"));
  EXPECT_FALSE(LiesInside(L"C:\\out", L"C:\\out"));
  EXPECT_FALSE(LiesInside(L"C:\\out\\..\\page.html", L"C:\\out"));
}

TEST(IsNamedAsPageTest, OnlyTheEndOfTheNameCounts) {
  EXPECT_TRUE(IsNamedAsPage(L"C:\\out\\page.html"));
  EXPECT_TRUE(IsNamedAsPage(L"page.HTM"));
  EXPECT_FALSE(IsNamedAsPage(L"C:\\out\\db.dxl"));
  EXPECT_FALSE(IsNamedAsPage(L"C:\\out.html\\audit"));
  EXPECT_FALSE(IsNamedAsPage(L"page.html.txt"));
  EXPECT_FALSE(IsNamedAsPage(L""));
}

}  // namespace
}  // namespace larkspan::console
