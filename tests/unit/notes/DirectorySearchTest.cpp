#include "notes/DirectorySearch.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "notes/Database.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

class DirectorySearchTest : public NotesFixture {
 protected:
  DirectorySearchTest() {
    WriteData(L"directory.json", R"({"path": "C:\\data", "generate": 5})");
    Start();
    EXPECT_TRUE(OpenDatabase("", directory_).ok());
  }

  Database directory_;
};

TEST_F(DirectorySearchTest, HandsOverEachEntry) {
  int visits = 0;
  SearchDirectory(directory_, [&](const auto&, const auto&) { ++visits; });
  EXPECT_EQ(visits, 5);
}

TEST_F(DirectorySearchTest, VisitorsExceptionComesOutAndNoFurtherMatchIsHandedOver) {
  int visits = 0;
  const auto visit = [&](const auto&, const auto&) {
    ++visits;
    throw std::out_of_range("a visitor's own");
  };
  EXPECT_THROW(SearchDirectory(directory_, visit), std::out_of_range);
  EXPECT_EQ(visits, 1);
}

}  // namespace
}  // namespace larkspan
