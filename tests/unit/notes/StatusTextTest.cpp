#include "notes/Status.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "notes/StatusCodes.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::DHANDLE;
using notes_api::STATUS;
using notes_api::WORD;

struct LoadedString {
  DHANDLE module = 1;
  STATUS code = 0;
  WORD size = 0;
};

LoadedString asked;
std::string answer;

// Says more than fits when the answer is longer than the place for it.
WORD LARKSPAN_NOTES_CALL Answer(DHANDLE module, STATUS code, char* out, WORD size) {
  asked = {module, code, size};
  answer.copy(out, size);
  return static_cast<WORD>(std::min<std::size_t>(answer.size(), size));
}

class StatusTextTest : public NotesFixture {
 protected:
  static std::wstring TextFor(const std::string& notesText) {
    answer = notesText;
    const ReplacedEntryPoint replaced("OSLoadString", Answer);
    return StatusText(Status(1));
  }
};

TEST_F(StatusTextTest, IsTheTextOfTheLibrary) {
  EXPECT_EQ(StatusText(Status(259)), L"File does not exist");
}

TEST_F(StatusTextTest, TopBitsDoNotMatter) {
  EXPECT_EQ(StatusText(Status(0xC103)), L"File does not exist");
}

TEST_F(StatusTextTest, ErrorNumberIsTheStatusMasked) {
  const ReplacedEntryPoint replaced("OSLoadString", Answer);
  StatusText(Status(0xFFFF));
  EXPECT_EQ(asked.code, 0x3FFF);
}

TEST_F(StatusTextTest, AsksTheLibrarysOwnModuleForAtMost255Bytes) {
  const ReplacedEntryPoint replaced("OSLoadString", Answer);
  StatusText(Status(1));
  EXPECT_EQ(asked.module, 0u);
  EXPECT_EQ(asked.size, 255);
}

TEST_F(StatusTextTest, LettersOutsideAsciiAreTranslated) {
  EXPECT_EQ(TextFor("Schl\x01\xFCssel \x14\x65\xE5"), L"Schl\u00FCssel \u65E5");
}

TEST_F(StatusTextTest, LongTextIsCutAt255Characters) {
  EXPECT_EQ(TextFor(std::string(400, 'a')), std::wstring(255, L'a'));
}

TEST_F(StatusTextTest, TextOfExactly255CharactersIsWhole) {
  EXPECT_EQ(TextFor(std::string(255, 'a')), std::wstring(255, L'a'));
}

TEST_F(StatusTextTest, TextWithoutLengthIsEmpty) { EXPECT_EQ(TextFor(""), L""); }

TEST_F(StatusTextTest, IsThereBeforeTheRuntimeIsStarted) {
  EXPECT_EQ(StatusText(Status(0x1A5)), L"Unable to find the file notes.ini");
}

TEST_F(StatusTextTest, StatusThatBringsItsOwnWordsIsNotLookedUp) {
  EXPECT_EQ(StatusText(kMemoryNotLocked), L"Memory of the Notes library cannot be locked");
  EXPECT_EQ(StatusText(kPathNotTranslated),
            L"Text is too long for the Notes library or cannot be put into its characters");
}

TEST_F(StatusTextTest, SameNumberOfTheLibraryHasTheLibrarysWords) {
  EXPECT_NE(StatusText(Status(272)), StatusText(kMemoryNotLocked));
  EXPECT_EQ(Status(272), kMemoryNotLocked);
}

}  // namespace
}  // namespace larkspan
