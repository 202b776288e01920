#include "dxl/ViewColumns.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/readers/ReaderTest.h"
#include "tests/support/ByteBuilder.h"

namespace larkspan {

namespace {

// A column as the library keeps it: the lengths of its four variable fields at the same words of
// the descriptor that holds them in memory would be wrong, so tests take real formats from the
// stand-in library and only change their bytes.
class ViewColumnsTest : public ReaderTest {
 protected:
  // The view format of a view with these columns, in JSON, in a database with these faults.
  ExactBytes FormatOf(const std::string& columns, const std::string& faults = "") {
    OpenDatabase(R"({"notes":[{"id":"0000011A","class":"view","view":{"columns":[)" + columns +
                 R"(]}}],"faults":[)" + faults + "]}");
    const notes_api::DHANDLE note = OpenNote(0x11A);
    notes_api::BlockId item{};
    notes_api::BlockId value{};
    notes_api::WORD type = 0;
    notes_api::DWORD length = 0;
    EXPECT_EQ(notes_api::NSFItemInfo(note, "$ViewFormat", 11, &item, &type, &value, &length), 0);
    const auto* bytes =
        static_cast<const std::byte*>(notes_api::OSLockObject(value.pool)) + value.block;
    ExactBytes format(bytes, bytes + length);
    notes_api::OSUnlockObject(value.pool);
    notes_api::NSFNoteClose(note);
    return format;
  }
};

std::string Described(const ViewColumns& columns) {
  std::string text;
  for (const ColumnConstant& constant : columns) {
    text += '[';
    for (const std::byte byte : constant) text += static_cast<char>(byte);
    text += ']';
  }
  return text;
}

constexpr char kThreeColumns[] =
    R"({"title":"Plant"},{"title":"Kind","constant":{"text":"herb"}},{"title":"Height"})";
const std::string kThreeConstants = std::string("[][") + '\x00' + '\x05' + "herb][]";

TEST_F(ViewColumnsTest, EachColumnHasItsConstantOrNone) {
  EXPECT_EQ(Described(ParseViewFormat(FormatOf(kThreeColumns))), kThreeConstants);
}

TEST_F(ViewColumnsTest, FieldsBeforeTheConstantAreSkippedWhateverTheyAre) {
  EXPECT_EQ(Described(ParseViewFormat(FormatOf(
                R"({"item": "a", "title": "bc", "formula": "def", "constant": {"text": "X"}},
                   {"item": "a", "formula": "ghij", "constant": {"text": "Y"}})"))),
            std::string("[") + '\x00' + '\x05' + "X][" + '\x00' + '\x05' + "Y]");
}

TEST_F(ViewColumnsTest, ViewWithoutColumnsHasNone) {
  EXPECT_TRUE(ParseViewFormat(FormatOf("")).empty());
}

TEST_F(ViewColumnsTest, MissingFormatHasNoColumns) { EXPECT_TRUE(ParseViewFormat({}).empty()); }

// The header is complete after so many bytes; before, the format tells of no columns. What is cut
// off behind it takes the constants that are not whole, but no column.
TEST_F(ViewColumnsTest, EveryTruncationKeepsTheColumnsAndLosesOnlyConstants) {
  const ExactBytes format = FormatOf(kThreeColumns);
  const std::size_t headerEnd = sizeof(notes_api::WORD) + notes_api::ODSLength(29);
  const std::size_t descriptorsEnd = headerEnd + 3 * std::size_t{notes_api::ODSLength(30)};
  std::size_t constants = 0;
  for (std::size_t length = 0; length < format.size(); ++length) {
    const std::string columns = Described(ParseViewFormat(FirstBytes(format, length)));
    if (length < headerEnd) {
      EXPECT_EQ(columns, "") << length;
    } else if (length < descriptorsEnd || columns != kThreeConstants) {
      EXPECT_EQ(columns, "[][][]") << length;
    } else {
      ++constants;
    }
  }
  // The third column's fields follow the constant.
  EXPECT_GE(constants, std::string_view("Height").size());
}

// The library would read as far as the structure goes, whatever is there.
TEST_F(ViewColumnsTest, StructureWhoseLengthIsNotToldIsNotRead) {
  const ExactBytes format = FormatOf(kThreeColumns, R"({"entry": "ODSLength", "status": 1})");
  EXPECT_EQ(Described(ParseViewFormat(FirstBytes(format, 2))), "");
  EXPECT_EQ(Described(ParseViewFormat(format)), "");
}

TEST_F(ViewColumnsTest, CountThatClaimsMoreColumnsReadsNothingOutside) {
  ExactBytes format = FormatOf(kThreeColumns);
  for (std::size_t at = sizeof(notes_api::WORD);
       at < sizeof(notes_api::WORD) + notes_api::ODSLength(29); ++at) {
    ExactBytes damaged = format;
    damaged[at] = std::byte{0xFF};
    for (const ColumnConstant& constant : ParseViewFormat(damaged)) {
      EXPECT_LE(constant.size(), format.size());
    }
  }
}

TEST_F(ViewColumnsTest, FieldThatClaimsMoreThanIsThereEndsTheConstants) {
  const ExactBytes format = FormatOf(kThreeColumns);
  const std::size_t headerEnd = sizeof(notes_api::WORD) + notes_api::ODSLength(29);
  const std::size_t descriptor = notes_api::ODSLength(30);
  int lost = 0;
  for (std::size_t at = headerEnd; at < headerEnd + descriptor; ++at) {
    ExactBytes damaged = format;
    damaged[at] = std::byte{0xFF};
    if (Described(ParseViewFormat(damaged)) == "[][][]") ++lost;
  }
  // The high bytes of four lengths, at least.
  EXPECT_GE(lost, 4);
}

}  // namespace

}  // namespace larkspan
