#include "console/text/Utf.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

TEST(IsUtf8Test, WholeCharactersAre) {
  for (const char* const text : {"", "Garden", "Glash\xC3\xA4user", "\xE6\x97\xA5\xE6\x9C\xAC",
                                 "\xF0\x9F\x8C\xB1", "\x01\x7F"})
    EXPECT_TRUE(IsUtf8(text)) << text;
  EXPECT_TRUE(IsUtf8(std::string_view("a\0b", 3)));
}

TEST(IsUtf8Test, OtherBytesAreNot) {
  for (const char* const bytes :
       {"Glash\x84user", "\xC3", "a\xC3", "\xC3(", "\xE6\x97", "\xF0\x9F\x8C", "\xFF", "\x80",
        "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"})
    EXPECT_FALSE(IsUtf8(bytes)) << bytes;
}

}  // namespace
}  // namespace larkspan::console
