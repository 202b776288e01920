#include "console/CommandLine.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(NearestWordTest, OneWrongLetterIsNear) {
  EXPECT_EQ(NearestWord("exprot", {"export", "verify", "report"}), "export");
  EXPECT_EQ(NearestWord("reprot", {"export", "verify", "report"}), "report");
  EXPECT_EQ(NearestWord("--severs", {"--server", "--path"}), "--server");
}

TEST(NearestWordTest, AnotherWordIsNotNear) {
  EXPECT_EQ(NearestWord("frobnicate", {"export", "verify", "report"}), "");
  EXPECT_EQ(NearestWord("", {"export"}), "");
}

TEST(NearestWordTest, TheNearestOfSeveralIsTaken) {
  EXPECT_EQ(NearestWord("--view", {"--views", "--no-views"}), "--views");
}

}  // namespace
}  // namespace larkspan::console
