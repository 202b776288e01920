#include "console/bag/BagPath.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(BagPathTest, PathsWithinABagAreSafe) {
  for (const char* path :
       {"data/a.txt", "bagit.txt", "data/a b/c.txt", "data/.hidden", "data/a..b", "data/~a",
        "data/con1", "data/console.txt", "data/comx", "data/com10", "data/\u65E5\u672C.txt"}) {
    EXPECT_EQ(WhyUnsafe(path), "") << path;
  }
}

TEST(BagPathTest, PathsThatMayLeadElsewhereAreNot) {
  for (const char* path : {"",
                           "/etc/hosts",
                           "\\Windows\\a",
                           "C:/a",
                           "c:\\a",
                           "C:a",
                           "\\\\server\\share\\a",
                           "//server/share/a",
                           "\\\\?\\C:\\a",
                           "\\\\.\\pipe\\a",
                           "../a",
                           "data/../../a",
                           "data/..",
                           "..",
                           "data/../a.txt",
                           "data/./a",
                           "data//a",
                           "data/",
                           "~/a",
                           "~somebody/a",
                           "data\\a",
                           "data/a.txt:stream",
                           "data/a::$DATA",
                           "data/a.",
                           "data/a ",
                           "data/a. /b",
                           "data/nul",
                           "data/NUL.txt",
                           "data/con/a",
                           "data/Aux .x",
                           "data/com1",
                           "data/LPT9.dxl",
                           "data/COM\u00B9",
                           "data/CONIN$",
                           "data/clock$"}) {
    EXPECT_NE(WhyUnsafe(path), "") << path;
  }
  EXPECT_NE(WhyUnsafe(std::string("data/a\0b", 8)), "");
}

TEST(BagPathTest, OnlyLineEndsAndPercentSignsAreEncoded) {
  EXPECT_EQ(EncodePath("data/100% \r\n\u00E4"), "data/100%25 %0D%0A\u00E4");
  EXPECT_EQ(DecodePath("data/100%25 %0D%0a%20%", Encoded::kLineEndsAndPercent),
            "data/100% \r\n%20%");
  EXPECT_EQ(DecodePath("100%25%0A", Encoded::kLineEnds), "100%25\n");
  EXPECT_EQ(DecodePath("%250A", Encoded::kLineEndsAndPercent), "%0A");
}

TEST(BagPathTest, LetterCaseAndNormalisationFoldAway) {
  EXPECT_EQ(FoldPath("data/a.TXT"), FoldPath("data/A.txt"));
  EXPECT_EQ(FoldPath("data/\u00C4"), FoldPath("data/\u00E4"));
  EXPECT_EQ(FoldPath("data/a\u0308"), FoldPath("data/\u00E4"));
  EXPECT_NE(FoldPath("data/a"), FoldPath("data/\u00E4"));
}

TEST(BagPathTest, AnUnlimitedPathIsWhole) {
  EXPECT_EQ(UnlimitedPath(L"C:\\a\\b\\"), L"\\\\?\\C:\\a\\b");
  EXPECT_EQ(UnlimitedPath(L"C:/a/../b"), L"\\\\?\\C:\\b");
  EXPECT_EQ(UnlimitedPath(L"\\\\server\\share\\a"), L"\\\\?\\UNC\\server\\share\\a");
  EXPECT_EQ(UnlimitedPath(L"\\\\?\\C:\\a"), L"\\\\?\\C:\\a");
}

}  // namespace
}  // namespace larkspan::console
