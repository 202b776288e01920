#include "console/page/Html.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace larkspan::console {
namespace {

constexpr char kReplaced[] = "\xEF\xBF\xBD";

TEST(HtmlTest, WhatHasAMeaningInAPageIsEscaped) {
  EXPECT_EQ(Html("<script>alert(1)</script>"), "&lt;script&gt;alert(1)&lt;/script&gt;");
  EXPECT_EQ(Html("\" onload='x' &amp;"), "&quot; onload=&#39;x&#39; &amp;amp;");
}

TEST(HtmlTest, LettersOfAllLanguagesStay) {
  EXPECT_EQ(Html("Glash\xC3\xA4user \xE3\x83\x84\xE3\x83\x90\xE3\x82\xAD \xF0\x9F\x8C\xB1"),
            "Glash\xC3\xA4user \xE3\x83\x84\xE3\x83\x90\xE3\x82\xAD \xF0\x9F\x8C\xB1");
}

TEST(HtmlTest, ControlCharactersAreShownAsReplaced) {
  const std::string nul(1, '\0');
  EXPECT_EQ(CleanText("a" + nul + "b\x1B[31mc\x7F"),
            std::string("a") + kReplaced + "b" + kReplaced + "[31mc" + kReplaced);
  EXPECT_EQ(CleanText("\xC2\x9B"), kReplaced);      // U+009B, a terminal's escape.
  EXPECT_EQ(CleanText("\xEF\xBF\xBE"), kReplaced);  // U+FFFE.
}

TEST(HtmlTest, TabsAndLineEndsAreBlanks) { EXPECT_EQ(CleanText("a\tb\r\nc"), "a b  c"); }

TEST(HtmlTest, WhatIsNoUtf8IsReplaced) {
  EXPECT_EQ(CleanText("M\xFCller"), std::string("M") + kReplaced + "ller");
  EXPECT_EQ(CleanText("cut \xE3\x83").substr(0, 7), std::string("cut ") + kReplaced);
}

TEST(HtmlTest, JsonCannotEndItsScript) {
  const std::string text = "</script><!-- & \xE2\x80\xA8\xE2\x80\xA9 \"quoted\" \xC3\xA4";
  const std::string data = ScriptJson({text});
  for (const char* const part : {"<", ">", "&", "\xE2\x80\xA8", "\xE2\x80\xA9"})
    EXPECT_EQ(data.find(part), std::string::npos) << part;
  EXPECT_EQ(nlohmann::json::parse(data), nlohmann::json({text}));
}

TEST(HtmlTest, ATextIsCutBetweenCharacters) {
  EXPECT_EQ(CutText("\xC3\xA4\xC3\xB6\xC3\xBC", 3), "\xC3\xA4\xC3\xB6\xC3\xBC");
  EXPECT_EQ(CutText("\xC3\xA4\xC3\xB6\xC3\xBC", 2), "\xC3\xA4\xC3\xB6\xE2\x80\xA6");
  EXPECT_EQ(CutText("", 0), "");
}

}  // namespace
}  // namespace larkspan::console
