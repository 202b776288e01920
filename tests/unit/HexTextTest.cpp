#include "base/HexText.h"

#include <gtest/gtest.h>

namespace larkspan {
namespace {

TEST(HexTextTest, HasEightDigits) {
  EXPECT_EQ(EightHexDigits(0), "00000000");
  EXPECT_EQ(EightHexDigits(0x8FA), "000008FA");
  EXPECT_EQ(EightHexDigits(0x12345678), "12345678");
  EXPECT_EQ(EightHexDigits(0x9ABCDEF0), "9ABCDEF0");
  EXPECT_EQ(EightHexDigits(0xFFFFFFFF), "FFFFFFFF");
}

}  // namespace
}  // namespace larkspan
