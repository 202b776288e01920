#include "export/IdTableFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "notes/IdTables.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

using NoteIds = std::vector<std::uint32_t>;

IdTable TableOf(const NoteIds& noteIds) {
  IdTable table;
  EXPECT_TRUE(CreateIdTable(table).ok());
  for (const std::uint32_t noteId : noteIds) EXPECT_TRUE(InsertId(table, noteId).ok());
  return table;
}

NoteIds IdsOf(const IdTable& table) {
  NoteIds noteIds;
  ScanIds(table, [&](std::uint32_t noteId) {
    noteIds.push_back(noteId);
    return true;
  });
  return noteIds;
}

class IdTableFileTest : public NotesFixture {
 protected:
  IdTableFileTest() { Start(); }

  const std::wstring file_ = PathOf(L"idtable.txt");
};

TEST_F(IdTableFileTest, HoldsEightDigitsALine) {
  EXPECT_TRUE(WriteIdTableFile(TableOf({0x2A, 0x12F6})));
  EXPECT_EQ(ReadBytes(file_), "0000002A\r\n000012F6\r\n");
}

TEST_F(IdTableFileTest, ScanThatEndsBeforeTheEndLeavesNoFile) {
  const IdTable table = TableOf({0x100, 0x200});
  SetFaults(R"([{"entry": "IDScan", "call": 2, "status": 1}])");
  EXPECT_FALSE(WriteIdTableFile(table));
  EXPECT_FALSE(Exists(file_));
}

TEST_F(IdTableFileTest, ScanThatTheLibraryBreaksOffLeavesNoHalfFile) {
  const IdTable table = TableOf({0x100, 0x200});
  SetFaults(R"([{"entry": "IDScan", "call": 2, "action": "throw"}])");
  EXPECT_ANY_THROW(WriteIdTableFile(table));
  EXPECT_FALSE(Exists(file_));
}

TEST_F(IdTableFileTest, LinesAreInAscendingOrder) {
  EXPECT_TRUE(WriteIdTableFile(TableOf({0x300, 0x100, 0x200})));
  EXPECT_EQ(ReadBytes(file_), "00000100\r\n00000200\r\n00000300\r\n");
}

TEST_F(IdTableFileTest, EmptyTableGivesAnEmptyFile) {
  EXPECT_TRUE(WriteIdTableFile(TableOf({})));
  EXPECT_EQ(ReadBytes(file_), "");
}

TEST_F(IdTableFileTest, WritingReplacesAnOldFile) {
  WriteBytes(file_, "00000004\r\n00000008\r\n");
  EXPECT_TRUE(WriteIdTableFile(TableOf({0x2A})));
  EXPECT_EQ(ReadBytes(file_), "0000002A\r\n");
}

TEST_F(IdTableFileTest, WritingWhereAFolderIsFails) {
  MakeFolder(file_);
  EXPECT_FALSE(WriteIdTableFile(TableOf({0x2A})));
}

// Faults of which each leaves the list incomplete on disk.
class IdTableFileFault : public IdTableFileTest, public testing::WithParamInterface<const char*> {};

TEST_P(IdTableFileFault, MakesWritingFailAndLeavesNoFile) {
  WriteBytes(file_, "00000004\r\n");
  const FileFaults faults(GetParam());
  EXPECT_FALSE(WriteIdTableFile(TableOf({0x2A, 0x2E, 0x32})));
  EXPECT_FALSE(Exists(file_));
}

INSTANTIATE_TEST_SUITE_P(Faults, IdTableFileFault,
                         testing::Values("write idtable.txt 1 diskFull",
                                         "write idtable.txt 2 diskFull 4",
                                         "write idtable.txt 3 noError 8",
                                         "close idtable.txt 1 diskFull"));

TEST_F(IdTableFileTest, NothingIsWrittenBehindALineThatFailed) {
  const FileFaults faults("write idtable.txt 2 diskFull");
  WriteIdTableFile(TableOf({0x2A, 0x2E, 0x32}));
  EXPECT_EQ(faults.Operations(),
            (std::vector<std::string>{"open idtable.txt", "write idtable.txt", "write idtable.txt",
                                      "close idtable.txt", "delete idtable.txt"}));
}

TEST_F(IdTableFileTest, WritingDoesNotChangeTheTable) {
  const IdTable table = TableOf({0x2A, 0x2E});
  WriteIdTableFile(table);
  EXPECT_EQ(IdsOf(table), (NoteIds{0x2A, 0x2E}));
}

TEST_F(IdTableFileTest, WrittenTableIsReadBack) {
  NoteIds noteIds;
  for (std::uint32_t noteId = 4; noteId <= 4000; noteId += 4) noteIds.push_back(noteId);
  ASSERT_TRUE(WriteIdTableFile(TableOf(noteIds)));
  const IdTable table = TableOf({});
  EXPECT_TRUE(ReadIdTableFile(table));
  EXPECT_EQ(IdsOf(table), noteIds);
}

TEST_F(IdTableFileTest, FileWithoutFinalLineEndIsReadCompletely) {
  WriteBytes(file_, "0000002A\r\n0000002E");
  const IdTable table = TableOf({});
  EXPECT_TRUE(ReadIdTableFile(table));
  EXPECT_EQ(IdsOf(table), (NoteIds{0x2A, 0x2E}));
}

TEST_F(IdTableFileTest, EmptyFileIsRead) {
  WriteBytes(file_, "");
  const IdTable table = TableOf({});
  EXPECT_TRUE(ReadIdTableFile(table));
  EXPECT_EQ(IdsOf(table), NoteIds());
}

TEST_F(IdTableFileTest, LineThatIsNoNumberMakesReadingFail) {
  WriteBytes(file_, "0000002A\r\nXYZ\r\n0000002E\r\n");
  EXPECT_FALSE(ReadIdTableFile(TableOf({})));
}

TEST_F(IdTableFileTest, MissingFileMakesReadingFail) { EXPECT_FALSE(ReadIdTableFile(TableOf({}))); }

TEST_F(IdTableFileTest, ReadingLeavesTheFile) {
  WriteBytes(file_, "0000002A\r\n");
  ReadIdTableFile(TableOf({}));
  EXPECT_EQ(ReadBytes(file_), "0000002A\r\n");
}

}  // namespace
}  // namespace larkspan
