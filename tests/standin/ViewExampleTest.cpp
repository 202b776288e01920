// A worked example for docs/standin-views.md: a view, and the bytes that programs get of it.
#include <sstream>

#include "tests/standin/ViewReading.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr char kExample[] = R"({"notes": [
  {"id": "0000090A", "class": "view",
   "items": [{"name": "$Title", "text": "Plants by bed"}],
   "view": {
     "indexed": true,
     "columns": [
       {"title": "Bed", "item": "Bed"},
       {"title": "Garden", "constant": {"text": "Arboretum"}},
       {"title": "Height", "item": "Height"}
     ],
     "entries": [
       {"category": true, "values": [{"text": "A1"}]},
       {"note": "000008FA", "indent": 1, "values": [{"text": "A1"}, {"number": 5.5}]},
       {"total": true, "values": [{"number": 5.5}]}
     ]}}
]})";

std::string BytesOf(const std::string& digits) {
  std::istringstream in(digits);
  std::string bytes;
  for (unsigned byte = 0; in >> std::hex >> byte;) bytes += static_cast<char>(byte);
  return bytes;
}

class ViewExample : public StandinTest {
 protected:
  ViewExample() : database_(OpenDatabase(kExample)) {}

  DHANDLE database_;
};

}  // namespace

TEST_F(ViewExample, GivesTheDocumentedEntries) {
  CollectionPosition position = {};
  const ReadBuffer read = ReadEntries(OpenCollection(database_, kDocument), &position);
  ASSERT_EQ(read.bytes.size(), 159U);
  EXPECT_EQ(read.bytes.substr(43, 67),
            BytesOf("FA 08 00 00  00 00 00 00 00 00 00 00 00 00 00 00  00 00  01 00 "
                    "01 00 00 00 01 00 00 00 01 00 00 00  23 00 02 00  03 00 04 00 06 00 0A 00 "
                    "42 65 64  00 05 41 31  48 65 69 67 68 74  00 03 00 00 00 00 00 00 16 40"));
  const std::vector<Entry> entries = EntriesIn(read);
  EXPECT_EQ(entries[0].id, 0x80000004U);
  EXPECT_EQ(entries[0].position, std::vector<DWORD>{1});
  EXPECT_EQ(entries[2].id, 0xC000000CU);
  EXPECT_EQ(entries[2].position, std::vector<DWORD>{2});
}

TEST_F(ViewExample, HasTheDocumentedFormat) {
  BlockId value = {};
  DWORD length = 0;
  ASSERT_EQ(NSFItemInfo(OpenNote(kDocument), "$ViewFormat", 11, nullptr, nullptr, &value, &length),
            0);
  const auto* const format = static_cast<const char*>(OSLockObject(value.pool)) + value.block;
  EXPECT_EQ(std::string(format, length),
            BytesOf("00 07  1D 00 01 02 03 00 00 00 "
                    "1E 00 00 00 00 00 03 00 03 00 50 00 11 00 00 00 "
                    "1E 00 00 00 0B 00 02 00 06 00 50 00 11 00 00 00 "
                    "1E 00 00 00 00 00 06 00 06 00 50 00 11 00 00 00") +
                "BedBed$2Garden" + BytesOf("00 05") + "ArboretumHeightHeight");
}

}  // namespace larkspan::standin_test
