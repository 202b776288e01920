// What a database file may say of views, and the values that entries can have.
#include "tests/standin/ViewReading.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class ViewFiles : public StandinTest {
 protected:
  STATUS OpenWith(const std::string& note) {
    const std::string name = std::to_string(++files_) + ".nsf";
    WriteFile(name, R"({"notes": [{"id": "90A", )" + note + "}]}");
    DHANDLE database = 0;
    return NSFDbOpen(name.c_str(), &database);
  }

  STATUS OpenWithEntry(const std::string& entry) {
    return OpenWith(R"("class": "view", "view": {"entries": [)" + entry + "]}");
  }

  // The bytes of a value, in hexadecimal digits.
  std::string ValueOf(const std::string& value) {
    const DHANDLE database =
        OpenDatabase(R"({"notes": [{"id": "90A", "class": "view", "view": {"entries": [)"
                     R"({"note": "902", "values": [)" +
                     value + "]}]}}]}");
    const std::string bytes = ReadView(database, 0x90A).at(0).items.at(0).second;
    std::string digits;
    for (const char byte : bytes) {
      char text[4];
      std::snprintf(text, sizeof text, "%02X", static_cast<BYTE>(byte));
      digits += text;
    }
    return digits;
  }

 private:
  int files_ = 0;
};

struct KnownValue {
  const char* value;
  const char* bytes;  // Type, then the fields of the value.
};

constexpr KnownValue kValues[] = {{R"({"text": "aé"})",
                                   "0005"
                                   "61"
                                   "01E9"},
                                  {R"({"text": ""})", "0005"},
                                  {R"({"textList": ["ab", ""]})",
                                   "0105"
                                   "0200"
                                   "0200"
                                   "0000"
                                   "6162"},
                                  {R"({"textList": []})",
                                   "0105"
                                   "0000"},
                                  {R"({"number": 1})",
                                   "0003"
                                   "000000000000F03F"},
                                  {R"({"numbers": [1]})",
                                   "0103"
                                   "0100"
                                   "0000"
                                   "000000000000F03F"},
                                  {R"({"numbers": [], "pairs": [[1, -2]]})",
                                   "0103"
                                   "0000"
                                   "0100"
                                   "000000000000F03F"
                                   "00000000000000C0"},
                                  {R"({"dateTime": "1970-01-01T00:00:01Z"})",
                                   "0004"
                                   "64000000"
                                   "8C3D2500"},
                                  {R"({"dateTime": "1970-01-01"})",
                                   "0004"
                                   "FFFFFFFF"
                                   "8C3D2500"},
                                  {R"({"dateTime": "T00:00:01Z"})",
                                   "0004"
                                   "64000000"
                                   "FFFFFF00"},
                                  {R"({"dateTimes": ["1970-01-01"]})",
                                   "0104"
                                   "0100"
                                   "0000"
                                   "FFFFFFFF"
                                   "8C3D2500"},
                                  {R"({"dateTimes": [], "pairs": [["1970-01-01", "1970-01-02"]]})",
                                   "0104"
                                   "0000"
                                   "0100"
                                   "FFFFFFFF"
                                   "8C3D2500"
                                   "FFFFFFFF"
                                   "8D3D2500"},
                                  {R"({"type": "0x0703", "bytes": "01 02"})",
                                   "0307"
                                   "0102"},
                                  {R"({"bytes": "00 03 01"})",
                                   "0003"
                                   "01"},
                                  {R"({"bytes": ""})", ""}};

}  // namespace

TEST_F(ViewFiles, HoldValuesOfEveryType) {
  for (const auto& [value, bytes] : kValues) EXPECT_EQ(ValueOf(value), bytes) << value;
}

TEST_F(ViewFiles, AreDamagedWhenAnEntryMakesNoSense) {
  Start();
  for (const char* entry :
       {R"({"note": "40000000"})", R"({"note": "902", "category": true})", "{}",
        R"({"note": "902", "colour": 1})", R"({"note": "902", "values": [{}]})",
        R"({"note": "902", "position": []})", R"({"note": "902", "position": [0]})",
        R"({"note": "902", "indent": 32})", R"({"note": "902", "counts": [1, 2]})",
        R"({"rawEntry": "0"})", R"({"rawEntry": "00", "note": "902"})",
        R"({"note": "902", "position": [1]}, {"note": "906", "position": [1]})"}) {
    EXPECT_EQ(OpenWithEntry(entry), 554) << entry;
  }
  EXPECT_EQ(OpenWithEntry(R"({"note": "902", "indent": 31})"), 0);
}

TEST_F(ViewFiles, AreDamagedWhenAViewMakesNoSense) {
  Start();
  for (const char* note :
       {R"("class": "form", "view": {})", R"("class": "view", "view": {"rows": []})",
        R"("class": "view", "view": {"columns": [{"name": "a"}]})",
        R"("class": "view", "view": {"columns": [{"constant": {}}]})",
        R"("class": "view", "view": {"generateEntries": -1})",
        R"("class": "view", "view": {}, "items": [{"name": "$ViewFormat", "type": 5}])"}) {
    EXPECT_EQ(OpenWith(note), 554) << note;
  }
  EXPECT_EQ(OpenWith(R"("class": "folder", "view": {})"), 0);
}

}  // namespace larkspan::standin_test
