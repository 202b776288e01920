#include "console/page/NotesFacts.h"

#include <gtest/gtest.h>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class NotesFactsTest : public ::testing::Test {
 protected:
  std::wstring Write(const std::string& xml) {
    WriteBytes(folder_ / L"\\file.dxl", xml);
    return folder_ / L"\\file.dxl";
  }
  std::string TitleOfDesign(const std::string& xml) { return ReadDesignFacts(Write(xml)).title; }

 private:
  TempFolder folder_;
};

TEST_F(NotesFactsTest, TheDatabaseIsNamedByItsRoot) {
  const DatabaseFacts facts = ReadDatabaseFacts(
      Write("<?xml version='1.0' encoding='utf-8'?><!DOCTYPE database><database "
            "replicaid=\"C12583D0004D1A2B\" path=\"a\\b.nsf\" title=\"Garten &amp; Park\"/>"));
  EXPECT_EQ(facts.title, "Garten & Park");
  EXPECT_EQ(facts.path, "a\\b.nsf");
  EXPECT_EQ(facts.replicaId, "C12583D0004D1A2B");
}

TEST_F(NotesFactsTest, WithoutAFileNothingIsKnown) {
  EXPECT_EQ(ReadDatabaseFacts(L"no such file").title, "");
  EXPECT_EQ(ReadDesignFacts(L"no such file").title, "");
  EXPECT_EQ(ReadDatabaseFacts(Write("no XML")).title, "");
}

TEST_F(NotesFactsTest, AViewIsNamedByItsTitleItem) {
  EXPECT_EQ(
      TitleOfDesign("<view><item name='$Flags'><text>P</text></item>"
                    "<item name='$TITLE'><text>Fr\xC3\xBChling<break/>2</text></item></view>"),
      "Fr\xC3\xBChling 2");
  EXPECT_EQ(TitleOfDesign("<view><item name='Title'><textlist><text>By Name</text>"
                          "<text>ByName</text></textlist></item></view>"),
            "By Name");
}

TEST_F(NotesFactsTest, TheNameOfTheRootComesFirst) {
  EXPECT_EQ(TitleOfDesign("<view name='Root'><item name='Title'><text>Item</text></item></view>"),
            "Root");
}

TEST_F(NotesFactsTest, AnotherItemIsNoTitle) {
  EXPECT_EQ(TitleOfDesign("<view><item name='Subtitle'><text>x</text></item>"
                          "<item name='$Title'><rawdata type='500'>eA==</rawdata></item></view>"),
            "");
}

TEST_F(NotesFactsTest, AFolderIsToldFromAView) {
  EXPECT_TRUE(ReadDesignFacts(Write("<folder/>")).isFolder);
  EXPECT_FALSE(ReadDesignFacts(Write("<view/>")).isFolder);
}

}  // namespace
}  // namespace larkspan::console
