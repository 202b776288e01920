#include "console/follow/LineReader.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/support/SystemProcess.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

TEST(LineSplitterTest, GivesLinesWhenTheyAreComplete) {
  LineSplitter splitter;
  EXPECT_EQ(splitter.Add("a\r\nb"), Lines{"a"});
  EXPECT_EQ(splitter.Add(""), Lines());
  EXPECT_EQ(splitter.Add("c\r"), Lines());
  EXPECT_EQ(splitter.Add("\nd\n\n"), (Lines{"bc", "d", ""}));
}

TEST(LineSplitterTest, KeepsACarriageReturnWithinALine) {
  LineSplitter splitter;
  EXPECT_EQ(splitter.Add("a\rb\r\r\n"), Lines{"a\rb\r"});
}

TEST(LineSplitterTest, EveryWayToCutATextGivesTheSameLines) {
  const std::string text = "one\r\n\r\nthree\nfour\r\n";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    LineSplitter splitter;
    Lines lines = splitter.Add(text.substr(0, cut));
    for (const std::string& line : splitter.Add(text.substr(cut))) lines.push_back(line);
    EXPECT_EQ(lines, (Lines{"one", "", "three", "four"})) << cut;
  }
}

class FileTailTest : public ::testing::Test {
 protected:
  void Append(const std::string& bytes) {
    WriteBytes(path_, (Exists(path_) ? ReadBytes(path_) : "") + bytes);
  }

  TempFolder folder_;
  std::wstring path_ = folder_ / L"\\log.txt";
  FileTail tail_{path_};
};

TEST_F(FileTailTest, AFileThatIsNotThereHasNoLines) { EXPECT_EQ(tail_.ReadNewLines(), Lines()); }

TEST_F(FileTailTest, EachLineIsGivenOnce) {
  Append("one\r\ntwo\r\n");
  EXPECT_EQ(tail_.ReadNewLines(), (Lines{"one", "two"}));
  EXPECT_EQ(tail_.ReadNewLines(), Lines());
  Append("three\r\n");
  EXPECT_EQ(tail_.ReadNewLines(), Lines{"three"});
}

TEST_F(FileTailTest, ALineThatComesInPiecesIsGivenWhole) {
  Append("on");
  EXPECT_EQ(tail_.ReadNewLines(), Lines());
  Append("e\r");
  EXPECT_EQ(tail_.ReadNewLines(), Lines());
  Append("\ntw");
  EXPECT_EQ(tail_.ReadNewLines(), Lines{"one"});
}

TEST_F(FileTailTest, AFileThatIsShorterIsReadFromItsBeginning) {
  Append("one\r\ntwo\r\nhal");
  tail_.ReadNewLines();
  WriteBytes(path_, "new\r\n");
  EXPECT_EQ(tail_.ReadNewLines(), Lines{"new"});
}

TEST_F(FileTailTest, AFileThatWasAwayIsReadFromItsBeginning) {
  Append("one\r\nhal");
  tail_.ReadNewLines();
  std::filesystem::remove(path_);
  EXPECT_EQ(tail_.ReadNewLines(), Lines());
  Append("a new first line\r\nand more\r\n");
  EXPECT_EQ(tail_.ReadNewLines(), (Lines{"a new first line", "and more"}));
}

TEST_F(FileTailTest, AFileThatMayNotBeOpenedIsReadOnLater) {
  Append("one\r\n");
  tail_.ReadNewLines();
  {
    const testing::UniqueSystemHandle held(CreateFileW(
        path_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_EQ(tail_.ReadNewLines(), Lines());
  }
  Append("two\r\n");
  EXPECT_EQ(tail_.ReadNewLines(), Lines{"two"});
}

TEST_F(FileTailTest, AFileThatIsReadMayBeReplaced) {
  Append("one\r\n");
  tail_.ReadNewLines();
  WriteBytes(folder_ / L"\\other", "a longer first line\r\n");
  EXPECT_TRUE(
      MoveFileExW((folder_ / L"\\other").c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING));
}

TEST_F(FileTailTest, ALongTextComesWhole) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "line " + std::to_string(i) + "\r\n";
  Append(text);
  const Lines lines = tail_.ReadNewLines();
  ASSERT_EQ(lines.size(), 5000u);
  EXPECT_EQ(lines.back(), "line 4999");
}

}  // namespace
}  // namespace larkspan::console
