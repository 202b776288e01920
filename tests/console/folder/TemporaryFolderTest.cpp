#include "console/folder/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace larkspan::console {
namespace {

TEST(TemporaryFolderTest, IsThereAndEmptyAsLongAsTheObjectLives) {
  std::wstring path;
  {
    const TemporaryFolder folder;
    path = folder.path();
    ASSERT_TRUE(std::filesystem::is_directory(path));
    EXPECT_TRUE(std::filesystem::is_empty(path));
    std::filesystem::create_directory(path + L"\\below");
    std::ofstream(std::filesystem::path(path + L"\\below\\file")) << "text";
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TemporaryFolderTest, TwoAreNotTheSame) {
  const TemporaryFolder one;
  const TemporaryFolder other;
  EXPECT_NE(one.path(), other.path());
}

}  // namespace
}  // namespace larkspan::console
