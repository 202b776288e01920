#include "console/page/ViewFile.h"

#include <gtest/gtest.h>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class ViewFileTest : public ::testing::Test {
 protected:
  ViewContent Read(const std::string& xml, std::size_t keep = 50) {
    WriteBytes(folder_ / L"\\view.xml", "<?xml version='1.0' encoding='utf-8'?>\r\n" + xml);
    return ReadViewFile(folder_ / L"\\view.xml", keep);
  }

  // The words of one value of a document.
  std::string Value(const std::string& xml) {
    const ViewContent content =
        Read("<view><document noteId=\"000008FE\"><value>" + xml + "</value></document></view>");
    return content.first.at(0).values.at(0);
  }

 private:
  TempFolder folder_;
};

TEST_F(ViewFileTest, EachKindOfEntryIsCounted) {
  const ViewContent content = Read(
      "<view><category/><document noteId='1' conflict='true'/><document noteId='2'/>"
      "<total/><partial/><category indent='1'/><document noteId='3'/></view>");
  EXPECT_TRUE(content.whole);
  EXPECT_EQ(content.documents, 3u);
  EXPECT_EQ(content.categories, 2u);
  EXPECT_EQ(content.totals, 1u);
  EXPECT_EQ(content.partials, 1u);
  EXPECT_EQ(content.conflicts, 1u);
  EXPECT_EQ(content.Entries(), 7u);
}

TEST_F(ViewFileTest, AnEmptyViewIsWhole) {
  const ViewContent content = Read("<view/>");
  EXPECT_TRUE(content.whole);
  EXPECT_EQ(content.Entries(), 0u);
}

TEST_F(ViewFileTest, TheFirstEntriesAreKeptAndAllAreCounted) {
  std::string xml = "<view>";
  for (int i = 0; i < 5000; ++i)
    xml += "<document noteId='" + std::to_string(i) + "'><value><text>" + std::to_string(i) +
           "</text></value></document>";
  const ViewContent content = Read(xml + "</view>", 3);
  EXPECT_EQ(content.documents, 5000u);
  ASSERT_EQ(content.first.size(), 3u);
  EXPECT_EQ(content.first[2].noteId, "2");
  EXPECT_EQ(content.first[2].values, std::vector<std::string>{"2"});
}

TEST_F(ViewFileTest, AnEntryHasItsLevelAndItsConflict) {
  const ViewContent content =
      Read("<view><document noteId='000008FE' indent='2' conflict='true'/><total/></view>");
  EXPECT_EQ(content.first.at(0).noteId, "000008FE");
  EXPECT_EQ(content.first.at(0).indent, 2u);
  EXPECT_TRUE(content.first.at(0).conflict);
  EXPECT_EQ(content.first.at(1).kind, EntryKind::kTotal);
  EXPECT_EQ(content.first.at(1).indent, 0u);
}

TEST_F(ViewFileTest, ValuesAreToldInWords) {
  EXPECT_EQ(Value("<text>a&lt;b</text>"), "a<b");
  EXPECT_EQ(Value("<text>a<break/>b<nonxmlchar value=\"001B\"/></text>"), "a b\xEF\xBF\xBD");
  EXPECT_EQ(Value("<number>-2.5</number>"), "-2.5");
  EXPECT_EQ(Value("<textlist><text>winter</text><text>bark</text></textlist>"), "winter; bark");
  EXPECT_EQ(Value("<datetime>20240131T143005,27+00</datetime>"), "2024-01-31 14:30:05 UTC");
  EXPECT_EQ(Value("<datetimelist><datetime>20240131</datetime><datetimepair>"
                  "<datetime>20240201</datetime><datetime>20240203</datetime></datetimepair>"
                  "<datetime>T143005,27</datetime></datetimelist>"),
            "2024-01-31; 2024-02-01 to 2024-02-03; 14:30:05");
  EXPECT_EQ(Value(""), "");
}

TEST_F(ViewFileTest, ALongValueIsCut) {
  const std::string value = Value("<text>" + std::string(5000, 'x') + "</text>");
  EXPECT_EQ(value, std::string(kShownCharacters, 'x') + "\xE2\x80\xA6");
}

TEST_F(ViewFileTest, OfManyValuesTheFirstAreKept) {
  std::string xml = "<view><document noteId='1'>";
  for (std::size_t i = 0; i < kShownValues + 1; ++i) xml += "<value><text>x</text></value>";
  const ViewContent content = Read(xml + "</document></view>");
  EXPECT_EQ(content.first.at(0).values.size(), kShownValues);
  EXPECT_TRUE(content.first.at(0).hasMoreValues);
}

TEST_F(ViewFileTest, ADamagedFileIsCountedUpToTheDamage) {
  const ViewContent content = Read("<view><document noteId='1'/><document noteId='2'></view>");
  EXPECT_FALSE(content.whole);
  EXPECT_EQ(content.documents, 2u);
}

TEST_F(ViewFileTest, NoTruncationIsTakenForTheWhole) {
  const std::string xml =
      "<view><document noteId='1'><value><textlist><text>a</text><text>b</text></textlist>"
      "</value></document></view>";
  for (std::size_t length = 0; length < xml.size(); ++length)
    EXPECT_FALSE(Read(xml.substr(0, length)).whole) << length;
  EXPECT_TRUE(Read(xml).whole);
}

TEST(ViewFileNameTest, AMissingFileIsNotWhole) {
  EXPECT_FALSE(ReadViewFile(L"no such file", 50).whole);
}

TEST(DateTimeTextTest, WhatIsNoDateTimeStays) {
  for (const char* const text :
       {"", "2024", "2024013", "20240131X", "T1430", "20240131T14", "soon"})
    EXPECT_EQ(DateTimeText(text), text);
}

}  // namespace
}  // namespace larkspan::console
