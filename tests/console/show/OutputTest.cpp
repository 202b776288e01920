#include "console/show/Output.h"

#include <gtest/gtest.h>

#include <array>

namespace larkspan::console {
namespace {

// Standard output is a pipe for as long as it lives.
class OutputTest : public ::testing::Test {
 protected:
  OutputTest() : earlier_(GetStdHandle(STD_OUTPUT_HANDLE)) {
    EXPECT_TRUE(CreatePipe(&reading_, &writing_, nullptr, 0));
    SetStdHandle(STD_OUTPUT_HANDLE, writing_);
  }

  ~OutputTest() override {
    SetStdHandle(STD_OUTPUT_HANDLE, earlier_);
    if (reading_ != nullptr) CloseHandle(reading_);
    CloseHandle(writing_);
  }

  std::string Read() {
    std::array<char, 100> bytes;
    DWORD count = 0;
    ReadFile(reading_, bytes.data(), bytes.size(), &count, nullptr);
    return {bytes.data(), count};
  }

  void StopReading() {
    CloseHandle(reading_);
    reading_ = nullptr;
  }

 private:
  HANDLE earlier_;
  HANDLE reading_ = nullptr;
  HANDLE writing_ = nullptr;
};

TEST_F(OutputTest, APipeIsNoTerminal) {
  Output output(STD_OUTPUT_HANDLE);
  EXPECT_FALSE(output.IsTerminal());
  EXPECT_FALSE(output.TakesColours());
  EXPECT_EQ(output.Width(), 80);
}

TEST_F(OutputTest, BytesGoThroughAPipeAsTheyAre) {
  const std::string text = "\xC3\xA4 \xE6\x97\xA5\n\xFF";
  EXPECT_TRUE(Output(STD_OUTPUT_HANDLE).Write(text));
  EXPECT_EQ(Read(), text);
}

TEST_F(OutputTest, AWriteThatNobodyReadsFails) {
  Output output(STD_OUTPUT_HANDLE);
  EXPECT_TRUE(output.Write("x"));
  StopReading();
  EXPECT_FALSE(output.Write("x"));
}

}  // namespace
}  // namespace larkspan::console
