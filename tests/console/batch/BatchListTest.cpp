#include "console/batch/BatchList.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

// "server!!path" of each, on a line of its own.
std::string NamesIn(const BatchList& list) {
  std::string names;
  for (const ListedDatabase& database : list.databases)
    names += database.server + "!!" + database.path + "\n";
  return names;
}

std::string NamesOf(const std::string& text) {
  BatchList list;
  EXPECT_EQ(ParseBatchList(text, list), "");
  return NamesIn(list);
}

std::string FaultOf(const std::string& text) {
  BatchList list;
  const std::string fault = ParseBatchList(text, list);
  EXPECT_TRUE(list.databases.empty());
  return fault;
}

TEST(BatchListTest, ALineNamesAServerAndAPathOrAPathAlone) {
  EXPECT_EQ(NamesOf("Mill/Example!!archive\\orders.nsf\r\n\r\nmail.nsf\n  !!a b.nsf \t\n"),
            "Mill/Example!!archive\\orders.nsf\n!!mail.nsf\n!!a b.nsf\n");
}

TEST(BatchListTest, OnlyTheFirstMarksEndTheServer) {
  EXPECT_EQ(NamesOf("Mill!!a!!b.nsf"), "Mill!!a!!b.nsf\n");
}

TEST(BatchListTest, WhatIsNamedAgainIsOneDatabase) {
  BatchList list;
  EXPECT_EQ(ParseBatchList("a.nsf\nMill!!a.nsf\na.nsf\n<Local>!!a.nsf\n", list), "");
  EXPECT_EQ(NamesIn(list), "!!a.nsf\nMill!!a.nsf\n");
  EXPECT_EQ(list.repeated, 2u);
}

TEST(BatchListTest, LettersOfAnotherCaseAreAnotherDatabase) {
  EXPECT_EQ(NamesOf("a.nsf\nA.nsf\n"), "!!a.nsf\n!!A.nsf\n");
}

TEST(BatchListTest, ALineWithoutAPathIsAFault) {
  EXPECT_EQ(FaultOf("a.nsf\n\nMill!!\n"), "line 3 names no path");
}

TEST(BatchListTest, ATableIsReadByItsTitles) {
  BatchList list;
  EXPECT_EQ(ParseBatchList("title,path,server,kind\r\n"
                           "\"Orders, old\",archive\\orders.nsf,Mill/Example,database\r\n"
                           ",archive,Mill/Example,folder\r\n",
                           list),
            "");
  ASSERT_EQ(list.databases.size(), 2u);
  EXPECT_EQ(list.databases[0].server, "Mill/Example");
  EXPECT_EQ(list.databases[0].path, "archive\\orders.nsf");
  EXPECT_EQ(list.databases[0].title, "Orders, old");
  EXPECT_FALSE(list.databases[0].isFolder);
  EXPECT_TRUE(list.databases[1].isFolder);
}

TEST(BatchListTest, ARowMustHaveAllFieldsAndAPath) {
  EXPECT_EQ(FaultOf("server,path\nMill,a.nsf\nMill\n"), "row 3 has 1 fields, not 2");
  EXPECT_EQ(FaultOf("server,path\nMill,\n"), "row 2 names no path");
  EXPECT_EQ(FaultOf("server,path\nMill,\"a.nsf\n"), "its quotes do not fit");
}

// As spreadsheets and shells write it.
TEST(BatchListTest, TitlesMayBeQuotedInAnyCaseAndLast) {
  EXPECT_EQ(NamesOf("server,path\r\nMill,a.nsf\r\n"), "Mill!!a.nsf\n");
  EXPECT_EQ(NamesOf("\"Path\",\"Server\"\r\n\"a.nsf\",\"Mill\"\r\n"), "Mill!!a.nsf\n");
  EXPECT_EQ(NamesOf("#TYPE System.Object\r\n\"server\",\"path\"\r\n\"Mill\",\"a.nsf\"\r\n"),
            "Mill!!a.nsf\n");
}

TEST(BatchListTest, WhatOnlyLooksLikeATableIsRefused) {
  EXPECT_EQ(FaultOf("server;path\r\nMill;a.nsf\r\n"), "its fields are not separated by commas");
  EXPECT_EQ(FaultOf("Path\tServer\na.nsf\tMill\n"), "its fields are not separated by commas");
  EXPECT_EQ(FaultOf("server,path\rMill,a.nsf\r"), "its lines end in a carriage return alone");
  EXPECT_EQ(NamesOf("a;b.nsf\n"), "!!a;b.nsf\n");
  EXPECT_EQ(NamesOf("a.nsf\r"), "!!a.nsf\n");
}

TEST(BatchListTest, AServerIsTheSameInAnyCase) {
  EXPECT_EQ(NamesOf("Garden!!a.nsf\nGARDEN!!a.nsf\nGarden!!A.nsf\n"),
            "Garden!!a.nsf\nGarden!!A.nsf\n");
}

TEST(BatchListTest, AnEmptyListHasNoDatabase) {
  EXPECT_EQ(NamesOf(""), "");
  EXPECT_EQ(NamesOf("server,path\n"), "");
}

class BatchListFileTest : public ::testing::Test {
 protected:
  std::string Read(const std::string& bytes) {
    const std::wstring file = folder_.path() + L"\\list.txt";
    WriteBytes(file, bytes);
    return ReadBatchList(file, list_);
  }

  TempFolder folder_;
  BatchList list_;
};

TEST_F(BatchListFileTest, AByteOrderMarkIsNoPartOfTheFirstName) {
  EXPECT_EQ(Read("\xEF\xBB\xBFserver,path\nMill,\xE7\xA8\xAE.nsf\n"), "");
  EXPECT_EQ(NamesIn(list_), "Mill!!\xE7\xA8\xAE.nsf\n");
}

// As the redirection of an older shell writes it.
TEST_F(BatchListFileTest, Utf16IsReadByItsMark) {
  EXPECT_EQ(Read(std::string("\xFF\xFE"
                             "a\0.\0n\0s\0f\0\r\0\n\0"
                             "\x2E\x7A"
                             "\n\0",
                             20)),
            "");
  EXPECT_EQ(NamesIn(list_), "!!a.nsf\n!!\xE7\xA8\xAE\n");
}

TEST_F(BatchListFileTest, WhatIsNoTextIsAFault) {
  EXPECT_EQ(Read("a.nsf\n\xFC.nsf\n"), "it is no UTF-8 text");
  EXPECT_EQ(Read(std::string("a\0.\0", 4)), "it is no UTF-8 text");
}

TEST_F(BatchListFileTest, AFileThatIsNotThereIsAFault) {
  EXPECT_EQ(ReadBatchList(folder_.path() + L"\\none.txt", list_), "it cannot be read");
}

TEST_F(BatchListFileTest, ALongListIsReadWhole) {
  std::string text;
  for (int i = 0; i < 30'000; ++i) text += "Mill!!archive\\" + std::to_string(i) + ".nsf\r\n";
  EXPECT_EQ(Read(text), "");
  ASSERT_EQ(list_.databases.size(), 30'000u);
  EXPECT_EQ(list_.databases.back().path, "archive\\29999.nsf");
}

}  // namespace
}  // namespace larkspan::console
