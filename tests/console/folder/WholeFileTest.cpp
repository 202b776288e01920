#include "console/folder/WholeFile.h"

#include <gtest/gtest.h>

#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class WholeFileTest : public ::testing::Test {
 protected:
  TempFolder folder_;
  const std::wstring file_ = folder_ / L"\\page.html";
  const std::wstring stage_ = folder_ / L"\\page.html.new";
};

TEST_F(WholeFileTest, TheFileIsThereByteForByte) {
  EXPECT_TRUE(WriteWholeFile(file_, "line\nline\r\n"));
  EXPECT_EQ(ReadBytes(file_), "line\nline\r\n");
  EXPECT_FALSE(Exists(stage_));
}

TEST_F(WholeFileTest, AnEarlierFileIsReplaced) {
  WriteBytes(file_, "an earlier and longer page");
  EXPECT_TRUE(WriteWholeFile(file_, "new"));
  EXPECT_EQ(ReadBytes(file_), "new");
}

TEST_F(WholeFileTest, AnEarlierFileStaysWhenTheNewOneCannotBeWritten) {
  for (const char* const fault :
       {"open page.html.new 1 accessDenied", "write page.html.new 1 diskFull 10",
        "close page.html.new 1 diskFull", "move page.html 1 sharingViolation"}) {
    WriteBytes(file_, "earlier");
    const FileFaults faults(fault);
    EXPECT_FALSE(WriteWholeFile(file_, "a page that is longer than ten bytes")) << fault;
    EXPECT_EQ(ReadBytes(file_), "earlier") << fault;
    EXPECT_FALSE(Exists(stage_)) << fault;
  }
}

TEST_F(WholeFileTest, AMissingFolderIsToldAsAFailure) {
  EXPECT_FALSE(WriteWholeFile(folder_ / L"\\missing\\page.html", "page"));
}

}  // namespace
}  // namespace larkspan::console
