#include "export/UnidIndex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "notes/Notes.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

constexpr char kTwoNotes[] = R"({"notes": [
  {"id": "0000002A", "unid": "0123456789ABCDEF0000000AFEDCBA98"},
  {"id": "ABCDEF00", "unid": "FFFFFFFF000000000000000100000002"}]})";

class UnidIndexTest : public NotesFixture {
 protected:
  UnidIndexTest() {
    WriteDatabase(kTwoNotes);
    Start();
    database_ = OpenTestDatabase();
  }

  Note Open(std::uint32_t noteId) { return OpenTestNote(database_, noteId); }

  const std::wstring file_ = PathOf(L"unidindex.txt");
  Database database_;
};

TEST_F(UnidIndexTest, NoteGivesItsIdAndItsUniversalId) {
  AppendUnidLine(Open(0x2A), 0x2A);
  EXPECT_EQ(ReadBytes(file_), "0000002A,0123456789ABCDEF0000000AFEDCBA98\r\n");
}

// The words as the library hands them over, so that their order in the line is told by numbers.
TEST_F(UnidIndexTest, SecondWordsStandBeforeFirstWords) {
  const notes_api::OriginatorId id = GetOriginatorId(Open(0x2A));
  EXPECT_EQ(id.file[1], 0x01234567u);
  EXPECT_EQ(id.file[0], 0x89ABCDEFu);
  EXPECT_EQ(id.note[1], 0x0000000Au);
  EXPECT_EQ(id.note[0], 0xFEDCBA98u);
}

TEST_F(UnidIndexTest, LinesAreAppended) {
  AppendUnidLine(Open(0x2A), 0x2A);
  AppendUnidLine(Open(0xABCDEF00), 0xABCDEF00);
  EXPECT_EQ(ReadBytes(file_),
            "0000002A,0123456789ABCDEF0000000AFEDCBA98\r\n"
            "ABCDEF00,FFFFFFFF000000000000000100000002\r\n");
}

TEST_F(UnidIndexTest, FileIsNotKeptOpenBetweenLines) {
  AppendUnidLine(Open(0x2A), 0x2A);
  WriteBytes(file_, "");
  AppendUnidLine(Open(0x2A), 0x2A);
  EXPECT_EQ(ReadBytes(file_), "0000002A,0123456789ABCDEF0000000AFEDCBA98\r\n");
}

TEST_F(UnidIndexTest, FolderInTheWayIsSilent) {
  MakeFolder(file_);
  AppendUnidLine(Open(0x2A), 0x2A);
  EXPECT_EQ(LogLines(), Lines());
}

// Faults of the second line of three, and what is then left of it.
struct UnidLineFault {
  const char* plan;
  const char* left;
};

class UnidIndexFault : public UnidIndexTest, public testing::WithParamInterface<UnidLineFault> {};

TEST_P(UnidIndexFault, IsSilentAndTheNextLineIsAppended) {
  const FileFaults faults(GetParam().plan);
  for (int i = 0; i < 3; ++i) AppendUnidLine(Open(0x2A), 0x2A);
  const std::string line = "0000002A,0123456789ABCDEF0000000AFEDCBA98\r\n";
  EXPECT_EQ(ReadBytes(file_), line + GetParam().left + line);
  EXPECT_EQ(LogLines(), Lines());
}

INSTANTIATE_TEST_SUITE_P(Faults, UnidIndexFault,
                         testing::Values(UnidLineFault{"open unidindex.txt 2 sharingViolation", ""},
                                         UnidLineFault{"write unidindex.txt 2 diskFull 4", "0000"},
                                         UnidLineFault{
                                             "close unidindex.txt 2 diskFull",
                                             "0000002A,0123456789ABCDEF0000000AFEDCBA98\r\n"}));

TEST_F(UnidIndexTest, DeletingThatFailsIsSilent) {
  WriteBytes(file_, "old\r\n");
  const FileFaults faults("delete unidindex.txt 1 accessDenied");
  DeleteUnidIndex();
  EXPECT_EQ(ReadBytes(file_), "old\r\n");
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(UnidIndexTest, DeletingRemovesTheFile) {
  WriteBytes(file_, "old\r\n");
  DeleteUnidIndex();
  EXPECT_FALSE(Exists(file_));
}

TEST_F(UnidIndexTest, DeletingAMissingFileIsSilent) {
  DeleteUnidIndex();
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
