#include "console/follow/Host.h"

#include <gtest/gtest.h>

#include "tests/support/Program.h"

namespace larkspan::console {
namespace {

TEST(FileVersionTest, IsInTheFileOfTheProgram) {
  const std::wstring program = testing::ProgramFolder() + L"\\larkspan.exe";
  EXPECT_EQ(FileVersion(program), LARKSPAN_VERSION);
  EXPECT_EQ(FileVersionNumbers(program), LARKSPAN_VERSION ".0");
}

TEST(FileVersionTest, IsEmptyWhereTheFileHasNone) {
  for (const wchar_t* name : {L"\\nnotes.dll", L"\\no such file.dll"}) {
    EXPECT_EQ(FileVersion(testing::ProgramFolder() + name), "");
    EXPECT_EQ(FileVersionNumbers(testing::ProgramFolder() + name), "");
  }
}

}  // namespace
}  // namespace larkspan::console
