#include "dxl/ViewEntryElement.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dxl/NumberSettings.h"
#include "tests/readers/EntryBytes.h"
#include "tests/readers/ReaderTest.h"
#include "tests/support/ByteBuilder.h"

namespace larkspan {

namespace {

constexpr notes_api::NOTEID kDocument = 0x000008FA;
constexpr notes_api::NOTEID kPartial = 0x400008FA;
constexpr notes_api::NOTEID kCategory = 0x80000004;
constexpr notes_api::NOTEID kTotal = 0xC0000004;

std::string ElementOf(const ExactBytes& bytes, const ViewColumns& columns) {
  ByteReader reader{Bytes(bytes)};
  ViewEntry entry;
  EXPECT_TRUE(ReadViewEntry(reader, entry));
  return Printed([&](tinyxml2::XMLPrinter& printer) {
    WriteViewEntry(printer, entry, {columns, GetNumberSettings()});
  });
}

std::string ElementWithoutColumns(notes_api::NOTEID noteId, unsigned int indent,
                                  const std::vector<SummaryItem>& items = {}) {
  return ElementOf(EntryBytes(noteId, indent, items), {});
}

// The texts of the values of an entry with so many items "1", "2", ..., one digit or letter each.
std::string ValuesOf(notes_api::NOTEID noteId, int items, const ViewColumns& columns) {
  constexpr std::string_view kTexts[] = {"1", "2", "3"};
  std::vector<SummaryItem> summary;
  for (int i = 0; i < items; ++i) summary.emplace_back("Item", TextValue(kTexts[i]));
  const std::string element = ElementOf(EntryBytes(noteId, 0, summary), columns);
  std::string texts;
  constexpr std::string_view kBefore = "<text>";
  for (std::size_t at = element.find(kBefore); at != std::string::npos;
       at = element.find(kBefore, at + 1)) {
    texts += element[at + kBefore.size()];
  }
  return texts;
}

using ViewEntryElementTest = ReaderTest;

TEST_F(ViewEntryElementTest, TopTwoBitsOfTheIdChooseTheElement) {
  EXPECT_EQ(ElementWithoutColumns(kDocument, 0), R"(<document noteId="000008FA"/>)");
  EXPECT_EQ(ElementWithoutColumns(kPartial, 0), "<partial/>");
  EXPECT_EQ(ElementWithoutColumns(kCategory, 0), "<category/>");
  EXPECT_EQ(ElementWithoutColumns(kTotal, 0), "<total/>");
}

TEST_F(ViewEntryElementTest, NoteIdHasEightDigits) {
  EXPECT_EQ(ElementWithoutColumns(0, 0), R"(<document noteId="00000000"/>)");
  EXPECT_EQ(ElementWithoutColumns(0x1234ABCD, 0), R"(<document noteId="1234ABCD"/>)");
  EXPECT_EQ(ElementWithoutColumns(0x3FFFFFFF, 0), R"(<document noteId="3FFFFFFF"/>)");
}

TEST_F(ViewEntryElementTest, IndentIsToldUnlessItIsZero) {
  EXPECT_EQ(ElementWithoutColumns(kCategory, 1), R"(<category indent="1"/>)");
  EXPECT_EQ(ElementWithoutColumns(kDocument, 12), R"(<document noteId="000008FA" indent="12"/>)");
  EXPECT_EQ(
      ElementOf(ByteBuilder().Append(EntryHead(kTotal, 65535, 0)).Append(SummaryBytes({})).Build(),
                {}),
      R"(<total indent="65535"/>)");
}

TEST_F(ViewEntryElementTest, ConflictIsToldOfEveryKindOfEntry) {
  const std::vector<SummaryItem> conflict = {{"Plant", TextValue("x")},
                                             {"$Conflict", TextValue("")}};
  EXPECT_EQ(ElementWithoutColumns(kDocument, 1, conflict),
            R"(<document noteId="000008FA" indent="1" conflict="true"/>)");
  EXPECT_EQ(ElementWithoutColumns(kCategory, 0, conflict), R"(<category conflict="true"/>)");
}

TEST_F(ViewEntryElementTest, ConflictOfADamagedSummaryIsNotLookedFor) {
  ExactBytes summary = SummaryBytes({{"$Conflict", TextValue("")}, {"Plant", TextValue("x")}});
  summary[4 + 4 + 2] = std::byte{0xFF};
  EXPECT_EQ(ElementOf(ByteBuilder().Append(EntryHead(kDocument, 0, 0)).Append(summary).Build(), {}),
            R"(<document noteId="000008FA"/>)");
}

TEST_F(ViewEntryElementTest, EachColumnHasAValueElement) {
  const ViewColumns columns(2);
  EXPECT_EQ(
      ElementOf(EntryBytes(kDocument, 0, {{"Plant", TextValue("Iris")}, {"Kind", ExactBytes()}}),
                columns),
      "<document noteId=\"000008FA\">\n"
      "    <value>\n"
      "        <text>Iris</text>\n"
      "    </value>\n"
      "    <value/>\n"
      "</document>");
}

struct Walk {
  notes_api::NOTEID noteId;
  int items;
  std::string columns;  // "-" takes an item, a letter is a constant.
  std::string expected;
};

ViewColumns ColumnsOf(const std::string& columns) {
  ViewColumns list;
  for (const char column : columns) {
    list.push_back(column == '-' ? ColumnConstant() : TextValue(std::string(1, column)));
  }
  return list;
}

TEST_F(ViewEntryElementTest, ConstantsStandBetweenTheItemsAndTakeNone) {
  const std::vector<Walk> walks = {
      {kDocument, 2, "--", "12"},
      {kDocument, 3, "--", "12"},
      {kDocument, 1, "--", "1"},
      {kDocument, 2, "c-d-e", "c1d2e"},
      {kDocument, 0, "cde", "cde"},
      // A document goes on with constants until a column wants an item that is not there.
      {kDocument, 1, "-cd-e", "1cd"},
      {kDocument, 0, "-c", ""},
      {kCategory, 1, "-cd-e", "1"},
      {kCategory, 0, "cde", ""},
      {kCategory, 2, "c-d-e", "c1d2"},
      {kTotal, 2, "c-d-e", "c1d2"},
      {kTotal, 1, "--", "1"},
      {kPartial, 1, "-c", "1"},
      {kPartial, 2, "c--", "c12"},
      {kDocument, 3, "", ""}};
  for (const Walk& walk : walks) {
    EXPECT_EQ(ValuesOf(walk.noteId, walk.items, ColumnsOf(walk.columns)), walk.expected)
        << std::hex << walk.noteId << " " << walk.columns;
  }
}

}  // namespace

}  // namespace larkspan
