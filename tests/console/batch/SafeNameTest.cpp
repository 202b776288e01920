#include "console/batch/SafeName.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

TEST(SafeNameTest, CharactersThatWindowsRefusesAreReplaced) {
  EXPECT_EQ(SafePart(L"a<b>c:d\"e|f?g*h\x01\x7Fi"), L"a_b_c_d_e_f_g_h__i");
}

TEST(SafeNameTest, DotsAndBlanksAtTheEndAreReplaced) {
  EXPECT_EQ(SafePart(L"orders. ."), L"orders___");
  EXPECT_EQ(SafePart(L".."), L"__");
  EXPECT_EQ(SafePart(L""), L"_");
  EXPECT_EQ(SafePart(L".hidden file.nsf"), L".hidden file.nsf");
}

TEST(SafeNameTest, NamesOfDevicesAreChanged) {
  for (const wchar_t* name : {L"CON", L"nul.nsf", L"Aux .txt", L"COM1", L"lpt9.a.b", L"COM\u00B2",
                              L"CONIN$", L"conout$.nsf", L"PRN", L"com0"})
    EXPECT_EQ(SafePart(name), L"_" + std::wstring(name));
  for (const wchar_t* name : {L"CONSOLE", L"COM", L"COM10", L"nulls.nsf", L"xCON"})
    EXPECT_EQ(SafePart(name), name);
}

TEST(SafeNameTest, ALongPartIsCutBetweenCharacters) {
  EXPECT_EQ(SafePart(std::wstring(300, L'a')), std::wstring(100, L'a'));
  const std::wstring beyond = std::wstring(99, L'a') + L"\xD83C\xDF31" + L"b";
  EXPECT_EQ(SafePart(beyond), std::wstring(99, L'a'));
}

TEST(SafeNameTest, AFolderIsTheServerAndEachPartOfThePath) {
  EXPECT_EQ(FolderNameOf({"Mill/Example", "archive\\old/orders.nsf", "", false}),
            L"Mill_Example\\archive\\old\\orders.nsf");
  EXPECT_EQ(FolderNameOf({"", "\\\\mail.nsf\\", "", false}), L"local\\mail.nsf");
  EXPECT_EQ(FolderNameOf({"", "..\\..\\C:\\con", "", false}), L"local\\__\\__\\C_\\_con");
}

TEST(SafeNameTest, TheSumIsOfTheServerInAnyCaseAndThePath) {
  const std::wstring one = FolderNameWithSum({"Mill", "a\\b.nsf", "", false});
  EXPECT_EQ(one.substr(0, 13), L"Mill\\a_b.nsf~");
  EXPECT_EQ(one.size(), 13u + 8);
  EXPECT_NE(FolderNameWithSum({"Mill", "A\\b.nsf", "", false}).substr(13), one.substr(13));
  EXPECT_EQ(FolderNameWithSum({"mill", "a\\b.nsf", "", false}).substr(13), one.substr(13));
  EXPECT_EQ(FolderNameWithSum({"Mill", "a\\b.nsf", "other", false}), one);
}

TEST(SafeNameTest, NamesOfAttemptsAndLongNamesAreRefused) {
  EXPECT_TRUE(IsRefused(L"Mill\\a.nsf.attempt-1"));
  EXPECT_TRUE(IsRefused(L"Mill\\a.Attempt-12\\b.nsf"));
  EXPECT_FALSE(IsRefused(L"Mill\\attempt-1"));
  EXPECT_FALSE(IsRefused(L"Mill\\" + std::wstring(135, L'a')));
  EXPECT_TRUE(IsRefused(L"Mill\\" + std::wstring(136, L'a')));
}

// What the system makes of a name is what decides.
TEST(SafeNameTest, TheSystemTakesEachNameAsItIs) {
  const TempFolder folder;
  for (const wchar_t* part : {L"nul", L"a.", L"b ", L"c:d", L"..", L"e\tf", L"COM3.nsf", L"種"}) {
    const std::wstring name = SafePart(part);
    const std::filesystem::path path = folder.path() + L"\\" + name;
    ASSERT_TRUE(std::filesystem::create_directory(path)) << path;
    bool isListed = false;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
      isListed = isListed || entry.path().filename() == name;
    EXPECT_TRUE(isListed) << path;
  }
}

}  // namespace
}  // namespace larkspan::console
