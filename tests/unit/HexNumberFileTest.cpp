#include "base/HexNumberFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ParameterName.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

using Numbers = std::vector<std::uint32_t>;

struct Content {
  std::string name;
  std::string bytes;
  Numbers numbers;
  HexNumberFileEnd end;
};

class HexNumberFileTest : public testing::Test {
 protected:
  HexNumberFileEnd Read() {
    return ReadHexNumberFile(path_, [this](std::uint32_t number) {
      numbers_.push_back(number);
      return numbers_.size() < wanted_;
    });
  }

  TempFolder folder_;
  const std::wstring path_ = folder_ / L"\\numbers.txt";
  std::size_t wanted_ = 1000;
  Numbers numbers_;
};

class HexNumberFileContent : public HexNumberFileTest,
                             public testing::WithParamInterface<Content> {};

TEST_P(HexNumberFileContent, GivesItsNumbersAndHowTheReadingEnded) {
  WriteBytes(path_, GetParam().bytes);
  EXPECT_EQ(Read(), GetParam().end);
  EXPECT_EQ(numbers_, GetParam().numbers);
}

constexpr HexNumberFileEnd kWhole = HexNumberFileEnd::kEndOfFile;
constexpr HexNumberFileEnd kBroken = HexNumberFileEnd::kBeforeEndOfFile;

INSTANTIATE_TEST_SUITE_P(
    Contents, HexNumberFileContent,
    testing::Values(Content{"Empty", "", {}, kWhole},
                    Content{"OneLine", "0000002A\r\n", {0x2A}, kWhole},
                    Content{"Lines", "0000002A\r\n0000002E\r\n", {0x2A, 0x2E}, kWhole},
                    Content{"NoFinalLineEnd", "0000002A\r\n0000002E", {0x2A, 0x2E}, kWhole},
                    Content{"LineFeedsOnly", "1\n2\n", {1, 2}, kWhole},
                    Content{"OneLineWithSpaces", " 1 2\t3 ", {1, 2, 3}, kWhole},
                    Content{"EmptyLines", "\r\n\r\n1\r\n\r\n", {1}, kWhole},
                    Content{"LowerCase", "abcdef\r\n", {0xABCDEF}, kWhole},
                    Content{"LargestNumber", "FFFFFFFF\r\n", {0xFFFFFFFF}, kWhole},
                    Content{"TextAtTheStart", "XYZ\r\n1\r\n", {}, kBroken},
                    Content{"TextBetween", "1\r\nXYZ\r\n2\r\n", {1}, kBroken},
                    Content{"TextAtTheEnd", "1\r\n2\r\nXYZ\r\n", {1, 2}, kBroken},
                    Content{"TextWithoutLineEnd", "1\r\nXYZ", {1}, kBroken},
                    Content{"NumberThenText", "12G\r\n", {0x12}, kBroken}),
    kNameOf);

TEST_F(HexNumberFileTest, MissingFileIsNotOpened) {
  EXPECT_EQ(Read(), HexNumberFileEnd::kNotOpened);
}

TEST_F(HexNumberFileTest, FolderIsNotOpened) {
  MakeFolder(path_);
  EXPECT_EQ(Read(), HexNumberFileEnd::kNotOpened);
}

TEST_F(HexNumberFileTest, FileThatTheSystemDoesNotReadIsNotAtItsEnd) {
  WriteBytes(path_, "1\r\n");
  const FileFaults faults("read numbers.txt * accessDenied");
  EXPECT_EQ(Read(), HexNumberFileEnd::kBeforeEndOfFile);
  EXPECT_EQ(numbers_, Numbers());
}

TEST_F(HexNumberFileTest, VisitorStopsTheReading) {
  WriteBytes(path_, "1\r\n2\r\n3\r\n");
  wanted_ = 2;
  EXPECT_EQ(Read(), HexNumberFileEnd::kStoppedByVisitor);
  EXPECT_EQ(numbers_, (Numbers{1, 2}));
}

TEST_F(HexNumberFileTest, VisitorThatStopsAtTheLastNumberStopsTheReading) {
  WriteBytes(path_, "1\r\n2");
  wanted_ = 2;
  EXPECT_EQ(Read(), HexNumberFileEnd::kStoppedByVisitor);
}

TEST_F(HexNumberFileTest, FileIsClosedAfterReading) {
  WriteBytes(path_, "1\r\n");
  Read();
  WriteBytes(path_, "2\r\n");
  Read();
  EXPECT_EQ(numbers_, (Numbers{1, 2}));
}

TEST_F(HexNumberFileTest, ManyNumbersAreRead) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes += "0000002A\r\n";
  WriteBytes(path_, bytes);
  wanted_ = 6000;
  EXPECT_EQ(Read(), HexNumberFileEnd::kEndOfFile);
  EXPECT_EQ(numbers_, Numbers(5000, 0x2A));
}

}  // namespace
}  // namespace larkspan
