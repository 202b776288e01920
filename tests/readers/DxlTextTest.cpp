#include "dxl/DxlText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

#include "tests/readers/ReaderTest.h"

namespace larkspan {

namespace {

using namespace std::string_view_literals;

std::string Text(std::string_view utf8, std::int32_t length) {
  return Printed([&](tinyxml2::XMLPrinter& printer) {
    printer.OpenElement("text");
    WriteDxlText(printer, utf8.data(), length);
    printer.CloseElement(true);
  });
}

struct Case {
  std::string_view utf8;
  std::string expected;
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.expected; }

class DxlTextTest : public testing::TestWithParam<Case> {};

TEST_P(DxlTextTest, GivesElementsForWhatXmlTextCannotHold) {
  const auto& [utf8, expected] = GetParam();
  EXPECT_EQ(Text(utf8, static_cast<std::int32_t>(utf8.size())), "<text" + expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DxlTextTest,
    testing::Values(Case{"", "/>"}, Case{"plain", ">plain</text>"},
                    Case{"a<b & \"c\" > 'd'", ">a&lt;b &amp; \"c\" &gt; 'd'</text>"},
                    Case{"\x7F stays", ">\x7F stays</text>"}, Case{"a\tb", ">a\tb</text>"},
                    Case{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\xB1",
                         ">\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\xB1</text>"},
                    Case{"a\nb", ">a<break/>b</text>"}, Case{"a\rb", ">a<break/>b</text>"},
                    Case{"a\0b"sv, ">a<break/>b</text>"},
                    Case{"a\r\nb", ">a<break/><break/>b</text>"},
                    Case{"ends\n", ">ends<break/></text>"},
                    Case{"\nbegins", "><break/>begins</text>"},
                    Case{"a<b\r\nc", ">a&lt;b<break/><break/>c</text>"},
                    Case{"\x01"
                         "a\x1F",
                         "><nonxmlchar value=\"0001\"/>a<nonxmlchar value=\"001F\"/></text>"},
                    Case{"a\x1B[", ">a<nonxmlchar value=\"001B\"/>[</text>"}));

// The printer gets a long text in pieces, wherever a character is cut by that.
TEST(DxlTextTest, LongTextIsWrittenWhole) {
  std::string text;
  for (int i = 0; i < 2000; ++i) {
    text += i % 7 == 0 ? "\xC3\xA4" : std::string(1, static_cast<char>('a' + i % 26));
    ASSERT_EQ(Text(text, static_cast<std::int32_t>(text.size())), "<text>" + text + "</text>") << i;
  }
}

TEST(DxlTextTest, EveryControlCharacterIsAnElementButTheTab) {
  for (char byte = 0; byte < 0x20; ++byte) {
    const std::string printed = Text(std::string_view(&byte, 1), 1);
    char code[24];
    std::snprintf(code, sizeof code, "value=\"%04X\"", static_cast<unsigned int>(byte));
    const bool isBreak = byte == 0x00 || byte == 0x0A || byte == 0x0D;
    EXPECT_EQ(printed.find("<break/>") != std::string::npos, isBreak) << int{byte};
    EXPECT_EQ(printed.find(code) != std::string::npos, !isBreak && byte != '\t') << int{byte};
  }
}

TEST(DxlTextTest, LengthOfZeroOrLessWritesNothing) {
  EXPECT_EQ(Text("text", 0), "<text/>");
  EXPECT_EQ(Text("text", -1), "<text/>");
}

TEST(DxlTextTest, NothingBehindTheLengthIsWritten) { EXPECT_EQ(Text("ab\n", 1), "<text>a</text>"); }

}  // namespace

}  // namespace larkspan
