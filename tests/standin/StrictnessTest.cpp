// Calls that the real library would not survive end the process with a message.
#include <fstream>
#include <thread>

#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class StrictnessDeathTest : public StandinTest {
 protected:
  StrictnessDeathTest() {
    Start();
    WriteFile("a.nsf", DocumentWith(R"({"name": "A", "text": "a"})"));
    EXPECT_EQ(NSFDbOpen("a.nsf", &database_), 0);
    EXPECT_EQ(NSFNoteOpen(database_, kDocument, 0, &note_), 0);
    EXPECT_EQ(OSMemAlloc(0, 8, &memory_), 0);
    EXPECT_EQ(IDCreateTable(0, &table_), 0);
    EXPECT_EQ(DXLCreateExporter(&exporter_), 0);
    EXPECT_EQ(NSFItemInfo(note_, "A", 1, &item_, nullptr, &value_, &length_), 0);
  }

  DHANDLE database_ = 0, note_ = 0, memory_ = 0, table_ = 0, exporter_ = 0;
  BlockId item_ = {}, value_ = {};
  DWORD length_ = 0;
  NOTEID id_ = 0;
};

class StrictLogDeathTest : public StandinTest {
 protected:
  StrictLogDeathTest() : log_(std::filesystem::temp_directory_path() / "standin-strict.log") {
    Start("StandinStrictLog=" + log_.string() + "\n");
  }

  std::filesystem::path log_;
};

STATUS LARKSPAN_NOTES_CALL IgnoreRecord(char*, WORD, DWORD, void*) { return 0; }
void LARKSPAN_NOTES_CALL IgnoreOutput(const BYTE*, DWORD, void*) {}

}  // namespace

TEST_F(StrictnessDeathTest, UseAfterClose) {
  NSFNoteClose(note_);
  EXPECT_STRICT(NSFNoteClose(note_),
                "NSFNoteClose: 0x02000001 is a note handle that was closed already");
  NSFDbClose(database_);
  EXPECT_STRICT(NSFNoteOpen(database_, kDocument, 0, &note_), "closed already");
  IDDestroyTable(table_);
  EXPECT_STRICT(IDEntries(table_), "closed already");
  OSMemFree(memory_);
  EXPECT_STRICT(OSMemFree(memory_), "closed already");
  DXLDeleteExporter(exporter_);
  EXPECT_STRICT(DXLDeleteExporter(exporter_), "closed already");
}

TEST_F(StrictnessDeathTest, WrongKindOfHandle) {
  EXPECT_STRICT(NSFNoteClose(database_), "is a database handle .* a note handle is needed");
  EXPECT_STRICT(NSFDbClose(note_), "is a note handle .* a database handle is needed");
  EXPECT_STRICT(IDScan(memory_, 1, &id_), "an ID table handle is needed");
  EXPECT_STRICT(DXLExportNote(table_, IgnoreOutput, note_, nullptr), "exporter handle is needed");
  EXPECT_STRICT(OSLockObject(note_), "memory handle is needed");
  EXPECT_STRICT(NIFCloseCollection(1), "collection handle is needed");
}

TEST_F(StrictnessDeathTest, NoHandleAtAll) {
  EXPECT_STRICT(NSFDbClose(0), "NSFDbClose: a zero handle was given");
  EXPECT_STRICT(OSMemFree(0x04FFFFFF), "memory handle is needed");
}

TEST_F(StrictnessDeathTest, Locks) {
  EXPECT_STRICT(OSUnlockObject(memory_), "not locked");
  OSLockObject(memory_);
  EXPECT_STRICT(OSMemFree(memory_), "still locked");
  OSLockObject(value_.pool);
  EXPECT_STRICT(NSFNoteClose(note_), "still locked");
  EXPECT_STRICT(NSFItemDelete(note_, "A", 1), "still locked");
}

TEST_F(StrictnessDeathTest, WritingPastTheEndOfMemory) {
  static_cast<volatile BYTE*>(OSLockObject(memory_))[8] = 1;
  EXPECT_STRICT(OSUnlockObject(memory_), "past its end");
}

TEST_F(StrictnessDeathTest, ClosingADatabaseWithANoteOpen) {
  EXPECT_STRICT(NSFDbClose(database_), "still open");
}

TEST_F(StrictnessDeathTest, ClosingADatabaseWithACollectionOpen) {
  WriteFile("b.nsf", R"({"notes": [{"id": "90A", "class": "view"}]})");
  DHANDLE views = 0;
  HCOLLECTION collection = 0;
  ASSERT_EQ(NSFDbOpen("b.nsf", &views), 0);
  ASSERT_EQ(
      NIFOpenCollection(views, views, 0x90A, 0, 0, &collection, nullptr, nullptr, nullptr, nullptr),
      0);
  EXPECT_STRICT(NSFDbClose(views), "a collection of the database is still open");
}

TEST_F(StrictnessDeathTest, CallsFromAnotherThread) {
  EXPECT_STRICT(std::thread([&] { NSFDbClose(database_); }).join(), "another thread");
}

TEST_F(StrictnessDeathTest, FreeingWhatBelongsToTheLibrary) {
  EXPECT_STRICT(OSMemFree(value_.pool), "belongs to the library");
}

TEST_F(StrictnessDeathTest, BlocksThatAreNoValue) {
  EXPECT_STRICT(EnumCompositeBuffer(item_, length_, IgnoreRecord, nullptr), "no item's value");
  EXPECT_STRICT(EnumCompositeBuffer(value_, length_ + 1, IgnoreRecord, nullptr), "the length");
  EXPECT_STRICT(
      NSFItemInfoNext(note_, {memory_, 4}, nullptr, 0, nullptr, nullptr, nullptr, nullptr),
      "not in the note");
}

TEST_F(StrictnessDeathTest, TextThatIsTooLongOrMissing) {
  EXPECT_STRICT(NSFItemInfo(note_, nullptr, 1, nullptr, nullptr, nullptr, nullptr), "no name");
  const std::string path(1024, 'x');
  EXPECT_STRICT(NSFDbOpen(path.c_str(), &database_), "too long");
  EXPECT_STRICT(NSFDbOpen(nullptr, &database_), "missing");
  EXPECT_STRICT(SECKFMOpen(nullptr, "a.id", "p", 1, 0, nullptr), "no place");
}

TEST_F(StrictnessDeathTest, TranslationsThatCannotBe) {
  char out[8];
  EXPECT_STRICT(OSTranslate(21, "a", 1, out, 8), "unknown translation mode 21");
  EXPECT_STRICT(OSTranslate(kTranslateUtf16ToNotes, "abc", 3, out, 8), "even number");
}

TEST_F(StrictnessDeathTest, MalformedNamesLists) {
  DHANDLE opened = 0;
  const auto open = [&](DHANDLE names) {
    NSFDbOpenExtended("a.nsf", 0, names, nullptr, &opened, nullptr, nullptr);
  };
  EXPECT_STRICT(open(memory_), "too short");
  const auto damaged = [&](std::size_t at, BYTE byte) {
    const DHANDLE names = MakeNamesList("CN=Imke", 7);
    static_cast<BYTE*>(OSLockObject(names))[at] = byte;
    OSUnlockObject(names);
    return names;
  };
  EXPECT_STRICT(open(damaged(0, 2)), "does not hold one name");
  EXPECT_STRICT(open(damaged(9, 1)), "no zeroes");
  EXPECT_STRICT(open(damaged(23, 'x')), "does not end");
  EXPECT_STRICT(open(damaged(18, 0)), "does not end");
  EXPECT_STRICT(open(note_), "memory handle is needed");
}

TEST_F(StrictnessDeathTest, NamesListsMayHoldAnythingInTheTwoUnusedBytes) {
  const DHANDLE names = MakeNamesList("CN=Imke", 7);
  static_cast<BYTE*>(OSLockObject(names))[10] = 0x55;
  OSUnlockObject(names);
  DHANDLE opened = 0;
  EXPECT_EQ(NSFDbOpenExtended("a.nsf", 0, names, nullptr, &opened, nullptr, nullptr), 0);
}

TEST_F(StrictnessDeathTest, CallsWhileTheRuntimeIsNotStarted) {
  EXPECT_STRICT((NotesTerm(), NSFDbClose(database_)), "NSFDbClose: the runtime is not started");
  EXPECT_STRICT((NotesTerm(), NotesTerm()), "NotesTerm: the runtime is not started");
  EXPECT_STRICT(Start(), "started already");
}

// A system without fork runs the test anew to let it die, so the log stands at a fixed place.
TEST_F(StrictLogDeathTest, HoldsTheMessage) {
  EXPECT_STRICT(NSFDbClose(0), "");
  std::string line;
  std::getline(std::ifstream(log_), line);
  EXPECT_EQ(line, "nnotes: NSFDbClose: a zero handle was given, a database handle is needed");
  std::filesystem::remove(log_);
}

}  // namespace larkspan::standin_test
