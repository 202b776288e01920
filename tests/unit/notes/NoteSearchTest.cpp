#include "notes/NoteSearch.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "notes/Database.h"
#include "notes/IdTables.h"
#include "notes/LibraryFunctions.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

using Ids = std::vector<std::uint32_t>;

constexpr char kSearchedDatabase[] = R"({
  "notes": [
    {"id": "00000902"},
    {"id": "00000906", "class": "form"},
    {"id": "0000090A", "class": 513},
    {"id": "80000002"},
    {"id": "0000090E", "class": "icon", "modified": "1950-01-01"}
  ],
  "deleted": [
    {"id": "00000912"},
    {"id": "00000916", "class": "form"}
  ]
})";

class NoteSearchTest : public NotesFixture {
 protected:
  NoteSearchTest() {
    WriteDatabase(kSearchedDatabase);
    Start();
    EXPECT_EQ(FindLibraryFunctions(L"nnotes.dll"), LibraryLookup::kFound);
    database_ = OpenTestDatabase();
    EXPECT_TRUE(CreateIdTable(table_).ok());
  }

  Status Search(std::uint16_t classMask, std::uint32_t extendedFlags = 0) {
    return SearchNotes(database_, {classMask, extendedFlags}, table_);
  }

  Ids Found() const {
    Ids ids;
    ScanIds(table_, [&](std::uint32_t id) {
      ids.push_back(id);
      return true;
    });
    return ids;
  }

  Database database_;
  IdTable table_;
};

TEST_F(NoteSearchTest, FindsEveryNoteButTheStubsOfDeletedOnes) {
  EXPECT_TRUE(Search(0x7FFF).ok());
  EXPECT_EQ(Found(), (Ids{0x902, 0x906, 0x90A, 0x90E, 0x80000002}));
}

TEST_F(NoteSearchTest, FindsTheClassesOfTheMaskOnly) {
  EXPECT_TRUE(Search(0x7FFE).ok());
  EXPECT_EQ(Found(), (Ids{0x906, 0x90A, 0x90E}));
}

TEST_F(NoteSearchTest, FindsNothingInAnEmptyDatabase) {
  WriteData(L"empty.nsf", "{}");
  EXPECT_TRUE(OpenDatabase("empty.nsf", database_).ok());
  EXPECT_TRUE(Search(0x7FFF).ok());
  EXPECT_EQ(Found(), Ids());
}

TEST_F(NoteSearchTest, HandsOverSixteenArguments) {
  EXPECT_TRUE(Search(0x7FFF, 0x80000002).ok());
  EXPECT_EQ(Arguments("NSFSearchExtended3"),
            R"([true,0,0,0,false,16,2147483650,0,0,0,32767,"19000101T000000,00+00",true,true,)"
            "false,0]");
}

TEST_F(NoteSearchTest, HandsOverMaskAndFlagsAsGiven) {
  EXPECT_TRUE(Search(0x7FFE, 0).ok());
  EXPECT_EQ(Arguments("NSFSearchExtended3"),
            R"([true,0,0,0,false,16,0,0,0,0,32766,"19000101T000000,00+00",true,true,false,0])");
}

TEST_F(NoteSearchTest, SinceTimeIsTheFirstOfJanuary1900InTheLocalZone) {
  EXPECT_TRUE(Search(0x7FFF).ok());
  EXPECT_EQ(Arguments("TimeLocalToGM"), "[1900,1,1,0,0,0,0,0,0,0]");
}

TEST_F(NoteSearchTest, StatusOfTheSearchIsReturned) {
  SetFaults(R"([{"entry": "NSFSearchExtended3", "status": "0x4103"}])");
  EXPECT_EQ(Search(0x7FFF).code(), 0x4103);
}

TEST_F(NoteSearchTest, NoteThatCannotBeInsertedMakesTheSearchFail) {
  SetFaults(R"([{"entry": "IDInsert", "note": "00000906", "status": 273}])");
  EXPECT_EQ(Search(0x7FFF).code(), 273);
}

TEST_F(NoteSearchTest, SearchGoesOnBehindANoteThatCannotBeInserted) {
  SetFaults(R"([{"entry": "IDInsert", "note": "00000906", "status": 273}])");
  EXPECT_FALSE(Search(0x7FFF).ok());
  EXPECT_EQ(Found(), (Ids{0x902, 0x90A, 0x90E, 0x80000002}));
}

TEST_F(NoteSearchTest, FirstFailingInsertionIsTold) {
  SetFaults(R"([{"entry": "IDInsert", "call": 2, "status": 273},
                {"entry": "IDInsert", "call": 3, "status": 1000}])");
  EXPECT_EQ(Search(0x7FFF).code(), 273);
}

notes_api::STATUS LARKSPAN_NOTES_CALL TellClassesAtTheLimit(
    notes_api::DHANDLE, notes_api::DHANDLE, notes_api::DHANDLE, notes_api::DWORD, char*,
    notes_api::DWORD, notes_api::DWORD, notes_api::DWORD, notes_api::DWORD, notes_api::DWORD,
    notes_api::WORD, notes_api::TIMEDATE*, notes_api::SearchCallback callback, void* context,
    notes_api::TIMEDATE*, notes_api::DHANDLE) {
  notes_api::SearchMatch match{};
  for (const notes_api::WORD noteClass : {0, 0x7FFF, 0x8000, 0xFFFF}) {
    match.noteId += 4;
    match.noteClass = noteClass;
    callback(context, &match, nullptr);
  }
  return 0;
}

TEST_F(NoteSearchTest, OnlyTheHighestBitOfTheClassMakesAStub) {
  FoundLibraryFunctions().searchExtended3 = TellClassesAtTheLimit;
  EXPECT_TRUE(Search(0x7FFF).ok());
  EXPECT_EQ(Found(), (Ids{4, 8}));
}

}  // namespace
}  // namespace larkspan
