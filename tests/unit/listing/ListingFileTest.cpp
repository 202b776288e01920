#include "listing/ListingFile.h"

#include <gtest/gtest.h>

#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {
namespace {

using ListingFileTest = OutputFolderTest;

TEST_F(ListingFileTest, LineIsOnDiskBeforeTheNextIsBegun) {
  ListingFile file;
  ASSERT_TRUE(file.Open(L"\\lines.txt"));
  file.WriteLine("first");
  EXPECT_EQ(ReadBytes(PathOf(L"lines.txt")), "first\r\n");
  file.WriteLine("second");
  EXPECT_EQ(ReadBytes(PathOf(L"lines.txt")), "first\r\nsecond\r\n");
}

TEST_F(ListingFileTest, LineThatIsNotWrittenShowsAtTheClose) {
  const FileFaults faults("write lines.txt 1 diskFull");
  ListingFile file;
  ASSERT_TRUE(file.Open(L"\\lines.txt"));
  file.WriteLine("first");
  EXPECT_FALSE(file.Close());
}

TEST_F(ListingFileTest, CloseThatFailsShows) {
  const FileFaults faults("close lines.txt 1 diskFull");
  ListingFile file;
  ASSERT_TRUE(file.Open(L"\\lines.txt"));
  file.WriteLine("first");
  EXPECT_FALSE(file.Close());
}

}  // namespace
}  // namespace larkspan
