#include "listing/ListingFile.h"

#include <gtest/gtest.h>

#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {
namespace {

class ListingFileTest : public OutputFolderTest {
 protected:
  // Whether a listing of one line is whole although these operations fail.
  static bool IsWholeWith(const char* plan) {
    const FileFaults faults(plan);
    ListingFile file;
    EXPECT_TRUE(file.Open(L"\\lines.txt"));
    file.WriteLine("first");
    return file.Close();
  }
};

TEST_F(ListingFileTest, LineIsOnDiskBeforeTheNextIsBegun) {
  ListingFile file;
  ASSERT_TRUE(file.Open(L"\\lines.txt"));
  file.WriteLine("first");
  EXPECT_EQ(ReadBytes(PathOf(L"lines.txt")), "first\r\n");
  file.WriteLine("second");
  EXPECT_EQ(ReadBytes(PathOf(L"lines.txt")), "first\r\nsecond\r\n");
}

TEST_F(ListingFileTest, LineFeedInsideALineIsWrittenAsText) {
  ListingFile file;
  ASSERT_TRUE(file.Open(L"\\lines.txt"));
  file.WriteLine("a\nb");
  ASSERT_TRUE(file.Close());
  EXPECT_EQ(ReadBytes(PathOf(L"lines.txt")), "a\r\nb\r\n");
}

TEST_F(ListingFileTest, LineThatIsNotWrittenShowsAtTheClose) {
  EXPECT_FALSE(IsWholeWith("write lines.txt 1 diskFull"));
}

TEST_F(ListingFileTest, CloseThatFailsShows) {
  EXPECT_FALSE(IsWholeWith("close lines.txt 1 diskFull"));
}

}  // namespace
}  // namespace larkspan
