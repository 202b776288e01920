// The format of a view, and how it is read into memory.
#include <cstring>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr std::size_t kHeaderInFile = 8;
constexpr std::size_t kColumnInFile = 16;

class ViewFormats : public StandinTest {
 protected:
  // The $ViewFormat item of a view.
  std::string FormatOf(const std::string& note) {
    OpenDatabase(R"({"notes": [{"id": "90A", "class": "view", )" + note + "}]}");
    const DHANDLE opened = OpenNote(kDocument);
    BlockId value = {};
    DWORD length = 0;
    if (NSFItemInfo(opened, "$ViewFormat", 11, nullptr, nullptr, &value, &length) != 0) return {};
    const auto* const bytes = static_cast<const char*>(OSLockObject(value.pool)) + value.block;
    const std::string copied(bytes, length);
    OSUnlockObject(value.pool);
    return copied;
  }

  static WORD WordAt(const char* bytes, std::size_t offset) {
    WORD word = 0;
    std::memcpy(&word, bytes + offset, sizeof word);
    return word;
  }

  // Reads one structure and moves on.
  static std::string Read(WORD kind, void** from) {
    char out[256];
    std::memset(out, '#', sizeof out);
    ODSReadMemory(from, kind, out, 1);
    return {out, sizeof out};
  }
};

using ViewFormatsDeathTest = ViewFormats;

constexpr char kTwoColumns[] = R"("view": {"columns": [
    {"item": "A", "title": "Tä", "formula": "abcd"},
    {"item": "Bcd", "title": "", "constant": {"text": "x"}}]})";

}  // namespace

TEST_F(ViewFormats, BeginWithTheirTypeWordAndHoldHeaderColumnsAndFields) {
  const std::string format = FormatOf(kTwoColumns);
  EXPECT_EQ(WordAt(format.data(), 0), 0x0700);
  const std::string fields =
      std::string("A") + "T\x01\xE4" + "abcd" + "Bcd" + "$2" + std::string("\x00\x05x", 3);
  EXPECT_EQ(format.size(), 2 + kHeaderInFile + 2 * kColumnInFile + fields.size() - 2);
  EXPECT_EQ(format.substr(2 + kHeaderInFile + 2 * kColumnInFile),
            fields.substr(0, 11) + fields.substr(13));
}

TEST_F(ViewFormats, TellInMemoryWhatTheyTellElsewhereInTheFile) {
  std::string format = FormatOf(kTwoColumns);
  void* at = format.data() + 2;
  const std::string header = Read(kViewTableFormat, &at);
  EXPECT_EQ(WordAt(header.data(), 2), 2);
  EXPECT_NE(WordAt(format.data() + 2, 2), 2);
  EXPECT_EQ(header.substr(12), std::string(256 - 12, '#'));
  EXPECT_EQ(at, format.data() + 2 + kHeaderInFile);
  const std::string first = Read(kViewColumnFormat, &at);
  const std::string second = Read(kViewColumnFormat, &at);
  EXPECT_EQ(at, format.data() + 2 + kHeaderInFile + 2 * kColumnInFile);
  EXPECT_EQ(first.substr(20), std::string(256 - 20, '#'));
  const std::vector<WORD> firstLengths = {1, 3, 4, 0}, secondLengths = {3, 0, 0, 3};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(WordAt(first.data(), 4 + 2 * i), firstLengths[i]);
    EXPECT_EQ(WordAt(second.data(), 4 + 2 * i), secondLengths[i]);
    EXPECT_NE(WordAt(format.data() + 2 + kHeaderInFile, 4 + 2 * i), firstLengths[i]);
  }
}

TEST_F(ViewFormats, AreReadSeveralStructuresAtATime) {
  std::string format = FormatOf(kTwoColumns);
  void* at = format.data() + 2 + kHeaderInFile;
  char out[40];
  ODSReadMemory(&at, kViewColumnFormat, out, 2);
  EXPECT_EQ(WordAt(out, 4), 1);
  EXPECT_EQ(WordAt(out, 24), 3);
  EXPECT_EQ(at, format.data() + 2 + kHeaderInFile + 2 * kColumnInFile);
}

TEST_F(ViewFormats, TellTheLengthsOfStructuresInTheFile) {
  Start();
  EXPECT_EQ(ODSLength(kViewTableFormat), kHeaderInFile);
  EXPECT_EQ(ODSLength(kViewColumnFormat), kColumnInFile);
}

TEST_F(ViewFormats, AreMissingOrDamagedWhenTheFileSaysSo) {
  EXPECT_EQ(FormatOf(R"("view": {"format": false, "columns": [{"item": "A"}]})"), "");
  EXPECT_EQ(FormatOf(R"("items": [])"), "");
  EXPECT_EQ(FormatOf(R"("view": {"format": false}, "items": [
                          {"name": "$ViewFormat", "type": "0x0700", "bytes": "1D"}])"),
            std::string("\x00\x07\x1D", 3));
}

TEST_F(ViewFormats, StandBehindTheOtherItems) {
  OpenDatabase(R"({"notes": [{"id": "90A", "class": "view", "view": {},
                              "items": [{"name": "$Title", "text": "t"}]}]})");
  const std::string dxl = Export(OpenNote(kDocument)).dxl;
  EXPECT_LT(dxl.find("$Title"), dxl.find("<item name='$ViewFormat'><rawdata type='700'>"));
}

TEST_F(ViewFormats, AreLeftAloneWhenAFaultStrikes) {
  Start();
  StandinSetFaults(R"([{"entry": "ODSReadMemory", "status": 1},
                       {"entry": "ODSLength", "status": 1}])");
  char source[8] = {};
  void* at = source;
  EXPECT_EQ(Read(kViewTableFormat, &at), std::string(256, '#'));
  EXPECT_EQ(at, source);
  EXPECT_EQ(ODSLength(kViewTableFormat), 0);
}

TEST_F(ViewFormatsDeathTest, MayNotBeReadPastTheirEnd) {
  OpenDatabase(R"({"notes": [{"id": "90A", "class": "view", "view": {}}]})");
  const DHANDLE note = OpenNote(kDocument);
  BlockId value = {};
  DWORD length = 0;
  ASSERT_EQ(NSFItemInfo(note, "$ViewFormat", 11, nullptr, nullptr, &value, &length), 0);
  void* at = static_cast<char*>(OSLockObject(value.pool)) + value.block + 2;
  Read(kViewTableFormat, &at);
  EXPECT_STRICT(Read(kViewColumnFormat, &at), "ODSReadMemory: the memory ends before what is read");
}

TEST_F(ViewFormatsDeathTest, HaveStructuresOfTwoKindsOnly) {
  Start();
  char source[64] = {};
  void* at = source;
  EXPECT_STRICT(ODSLength(31), "unknown kind of structure 31");
  EXPECT_STRICT(Read(28, &at), "unknown kind of structure 28");
}

}  // namespace larkspan::standin_test
