#include "console/page/PageFile.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

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
