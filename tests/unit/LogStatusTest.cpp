// Statuses of the Notes library in the words of the run log.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "base/WideFormat.h"
#include "notes/NotesApi.h"
#include "notes/Status.h"
#include "report/RunLog.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {
namespace {

constexpr notes_api::STATUS kConfigurationNotFound = 0x1A5;
constexpr notes_api::STATUS kRichTextDamaged = 1173;

using LogStatusTest = OutputFolderTest;

// What the library itself says about an error number; for these it says it in ASCII.
std::string LibraryText(notes_api::STATUS errorNumber) {
  std::array<char, 255> text{};
  const std::size_t length = notes_api::OSLoadString(0, errorNumber, text.data(),
                                                     static_cast<notes_api::WORD>(text.size()));
  return std::string(text.data(), length);
}

std::wstring WideLibraryText(notes_api::STATUS errorNumber) {
  const std::string text = LibraryText(errorNumber);
  return std::wstring(text.begin(), text.end());
}

TEST_F(LogStatusTest, StatusesDifferInTheirTexts) {
  EXPECT_NE(StatusText(Status(kConfigurationNotFound)), StatusText(Status(kRichTextDamaged)));
}

TEST_F(LogStatusTest, TextIsTheLibrarys) {
  EXPECT_EQ(StatusText(Status(kRichTextDamaged)), WideLibraryText(kRichTextDamaged));
}

TEST_F(LogStatusTest, TopBitsDoNotChangeTheText) {
  for (const int topBits : {0x4000, 0x8000, 0xC000}) {
    const auto code = static_cast<notes_api::STATUS>(kRichTextDamaged | topBits);
    EXPECT_EQ(StatusText(Status(code)), WideLibraryText(kRichTextDamaged)) << topBits;
  }
}

TEST_F(LogStatusTest, StatusFillsTheFormat) {
  LogStatus(LogLevel::kWarning, L"Unable to open (%s) today", Status(kRichTextDamaged));
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - Unable to open (" + LibraryText(kRichTextDamaged) + ") today"});
}

TEST_F(LogStatusTest, LevelIsTheCallers) {
  LogStatus(LogLevel::kDebug, L"%s", Status(kRichTextDamaged));
  LogStatus(LogLevel::kError, L"%s", Status(kRichTextDamaged));
  EXPECT_EQ(LogLines(), (Lines{"#DEBUG# - " + LibraryText(kRichTextDamaged),
                               "#ERROR# - " + LibraryText(kRichTextDamaged)}));
}

TEST_F(LogStatusTest, LineBelowTheMinimumLevelIsDropped) {
  LeaveOutDebugLines();
  LogStatus(LogLevel::kDebug, L"%s", Status(kRichTextDamaged));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(LogStatusTest, NoteIdIsFormattedFirst) {
  const std::wstring format = FormatWide(L"Major: Error opening note %08X (%%s)", 0x12F6u);
  LogStatus(LogLevel::kWarning, format.c_str(), Status(kRichTextDamaged));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: Error opening note 000012F6 (" +
                              LibraryText(kRichTextDamaged) + ")"});
}

TEST_F(LogStatusTest, LongFormatIsCutLikeAnyMessage) {
  const std::wstring format = std::wstring(2000, L'a') + L"%s";
  LogStatus(LogLevel::kError, format.c_str(), Status(kRichTextDamaged));
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - " + std::string(1012, 'a')});
}

}  // namespace
}  // namespace larkspan
