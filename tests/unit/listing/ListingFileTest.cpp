#include "listing/ListingFile.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace larkspan
