#include "notes/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

class TextTest : public NotesFixture {
 protected:
  static std::string Translated(std::wstring_view text) {
    std::string notes;
    EXPECT_TRUE(WideToNotes(text, notes));
    return notes;
  }

  static bool IsTranslated(std::wstring_view text) {
    std::string notes;
    return WideToNotes(text, notes);
  }
};

TEST_F(TextTest, AsciiIsTheSameInTheNotesCharacterSet) {
  EXPECT_EQ(Translated(L"mail\\a.nsf"), "mail\\a.nsf");
}

TEST_F(TextTest, LettersOutsideAsciiAreTranslated) {
  EXPECT_EQ(Translated(L"\u00E9\u65E5"), "\x01\xE9\x14\x65\xE5");
}

TEST_F(TextTest, EmptyTextStaysEmpty) {
  EXPECT_EQ(Translated(L""), "");
  EXPECT_EQ(NotesToWide("", 512), L"");
}

TEST_F(TextTest, TextBehindTheViewIsNotTranslated) {
  EXPECT_EQ(Translated(std::wstring_view(L"abcdef", 3)), "abc");
}

TEST_F(TextTest, NotesTextIsTranslatedBack) {
  EXPECT_EQ(NotesToWide("a\x01\xE9\x14\x65\xE5", 512), L"a\u00E9\u65E5");
}

TEST_F(TextTest, LongestNotesTextLeavesRoomForItsNul) {
  EXPECT_EQ(Translated(std::wstring(1023, L'a')), std::string(1023, 'a'));
  EXPECT_EQ(Translated(std::wstring(1020, L'a') + L"\u65E5"),
            std::string(1020, 'a') + "\x14\x65\xE5");
}

TEST_F(TextTest, TextThatDoesNotFitIsRefused) {
  EXPECT_FALSE(IsTranslated(std::wstring(1024, L'a')));
  EXPECT_FALSE(IsTranslated(std::wstring(1021, L'a') + L"\u65E5"));
  EXPECT_FALSE(IsTranslated(std::wstring(1022, L'a') + L"\u65E5"));
  EXPECT_FALSE(IsTranslated(std::wstring(1207, L'a')));
  EXPECT_FALSE(IsTranslated(std::wstring(100000, L'a')));
}

TEST_F(TextTest, TextThatTheLibraryTranslatesToNothingIsRefused) {
  SetFaults(R"([{"entry": "OSTranslate", "status": 1}])");
  EXPECT_FALSE(IsTranslated(L"a"));
}

TEST_F(TextTest, InputLongerThanTheLibraryCountsIsCut) {
  EXPECT_EQ(NotesToWide(std::string(100000, 'a'), 512), std::wstring(256, L'a'));
}

TEST_F(TextTest, WideTextIsLimitedInBytes) {
  EXPECT_EQ(NotesToWide(std::string(255, 'a'), 510), std::wstring(255, L'a'));
  EXPECT_EQ(NotesToWide(std::string(300, 'a'), 510), std::wstring(255, L'a'));
}

TEST_F(TextTest, SurrogatePairThatDoesNotFitIsLeftOutWhole) {
  const std::string face = Translated(L"\U0001F600");
  EXPECT_EQ(NotesToWide("a" + face, 6), L"a\U0001F600");
  EXPECT_EQ(NotesToWide("a" + face, 4), L"a");
}

TEST_F(TextTest, FirstEightBytesAreComparedByTheLibrary) {
  Start();
  EXPECT_TRUE(FirstEightBytesEqual("$profile_1", "$profile"));
  EXPECT_EQ(Arguments("IntlTextCompare"), R"({"length1":8,"length2":8,"options":0})");
}

TEST_F(TextTest, OtherFirstBytesDiffer) {
  Start();
  EXPECT_FALSE(FirstEightBytesEqual("$profila", "$profile"));
}

TEST_F(TextTest, ShorterTextsAreNeverEqual) {
  Start();
  EXPECT_FALSE(FirstEightBytesEqual("$profil", "$profile"));
  EXPECT_FALSE(FirstEightBytesEqual("$profile", "$profil"));
  EXPECT_FALSE(FirstEightBytesEqual("", ""));
  EXPECT_EQ(Calls("IntlTextCompare"), 0);
}

}  // namespace
}  // namespace larkspan
