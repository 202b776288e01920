#include "tests/unit/export/NoteLoopTest.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/ParameterName.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/StopRequest.h"

namespace larkspan {
namespace {

TEST_F(NoteLoopTest, EveryListedNoteIsExported) {
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_TRUE(HasData(L"00000902"));
  EXPECT_TRUE(HasData(L"00000906"));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(NoteLoopTest, NoteThatIsNotListedIsNotExported) {
  EXPECT_TRUE(Walk({0x902}));
  EXPECT_FALSE(HasData(L"00000906"));
}

TEST_F(NoteLoopTest, ScanThatEndsBeforeTheEndIsAnErrorLine) {
  SetFaults(R"([{"entry": "IDScan", "from": 2, "status": 1}])");
  EXPECT_FALSE(Walk({0x902, 0x906}));
  EXPECT_TRUE(HasData(L"00000902"));
  EXPECT_FALSE(HasMarker());
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
}

TEST_F(NoteLoopTest, CountThatIsNotToldIsNoReasonToStop) {
  SetFaults(R"([{"entry": "IDEntries", "status": 1}])");
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(NoteLoopTest, EmptyListIsWalkedToItsEnd) {
  EXPECT_TRUE(Walk({}));
  EXPECT_EQ(progress_, "");
}

TEST_F(NoteLoopTest, NotesAreWalkedInAscendingOrder) {
  EXPECT_TRUE(Walk({0x80000002, 0x906, 0x902}));
  EXPECT_EQ(progress_,
            "PROGRESS: DOCUMENT: 00000902\r\nPROGRESS: DOCUMENT: 00000906\r\n"
            "PROGRESS: DOCUMENT: 80000002\r\n");
}

TEST_F(NoteLoopTest, ResumeNoteAndThoseBeforeItArePassedOver) {
  EXPECT_TRUE(Walk({0x902, 0x906, 0x80000002}, 0x906));
  EXPECT_EQ(progress_, "PROGRESS: DOCUMENT: 80000002\r\n");
  EXPECT_EQ(Calls("NSFNoteOpen"), 1);
}

TEST_F(NoteLoopTest, ResumeNoteThatIsNotListedIsAPlaceInTheOrder) {
  EXPECT_TRUE(Walk({0x902, 0x906}, 0x903));
  EXPECT_EQ(progress_, "PROGRESS: DOCUMENT: 00000906\r\n");
}

TEST_F(NoteLoopTest, NoteIdsAreComparedUnsigned) {
  EXPECT_TRUE(Walk({0x902, 0x80000002}, 0x7FFFFFFF));
  EXPECT_FALSE(HasData(L"00000902"));
  EXPECT_TRUE(HasData(L"80000002"));
}

TEST_F(NoteLoopTest, SmallNoteIdIsNotGreaterThanALargeResumeNoteId) {
  EXPECT_TRUE(Walk({0x902, 0x80000002}, 0x80000002));
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
}

TEST_F(NoteLoopTest, WalkLeavesNoMarker) {
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, StopRequestEndsTheWalkBeforeTheNoteIsOpened) {
  RequestStop();
  EXPECT_FALSE(Walk({0x902}));
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
}

TEST_F(NoteLoopTest, StopRequestLeavesNoMarker) {
  RequestStop();
  EXPECT_FALSE(Walk({0x902}));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, MarkerThatCannotBeWrittenEndsTheWalk) {
  MakeFolder(PathOf(L"marker.txt"));
  const PauseRecorder recorder;
  EXPECT_FALSE(Walk({0x902, 0x906}));
  EXPECT_EQ(recorder.pauses().size(), 29u);
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
  EXPECT_EQ(progress_, "");
}

TEST_F(NoteLoopTest, NoteThatCannotBeOpenedIsAMajorLine) {
  EXPECT_TRUE(Walk({0xFFE, 0x80000002}));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: Error opening note 00000FFE "
                              "(Note does not exist in the database)"});
}

TEST_F(NoteLoopTest, WalkGoesOnBehindANoteThatCannotBeOpened) {
  EXPECT_TRUE(Walk({0xFFE, 0x80000002}));
  EXPECT_TRUE(HasData(L"80000002"));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, LastNoteThatCannotBeOpenedLeavesNoMarker) {
  EXPECT_TRUE(Walk({0xFFE}));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, NoteThatCannotBeOpenedIsNotIndexed) {
  EXPECT_TRUE(Walk({0xFFE}));
  EXPECT_FALSE(Exists(PathOf(L"unidindex.txt")));
}

TEST_F(NoteLoopTest, NoteThatCannotBeExportedIsAMajorLine) {
  SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "status": 552}])");
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: Error exporting note 00000902 "
                              "(Item does not exist in the note)"});
}

TEST_F(NoteLoopTest, WalkGoesOnBehindANoteThatCannotBeExported) {
  SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "status": 552}])");
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_TRUE(HasData(L"00000906"));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, OpenedNotesAreIndexedInAnArchive) {
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_EQ(ReadLines(PathOf(L"unidindex.txt")).size(), 2u);
}

TEST_F(NoteLoopTest, NothingIsIndexedOutsideArchives) {
  SetArchive(false);
  EXPECT_TRUE(Walk({0x902}));
  EXPECT_FALSE(Exists(PathOf(L"unidindex.txt")));
  EXPECT_TRUE(Exists(PathOf(L"00000902.dxl")));
}

TEST_F(NoteLoopTest, NoteThatIsNotSealedNeedsNoKey) {
  SetId(L"missing.id", L"a");
  EXPECT_TRUE(Walk({0x902}));
  EXPECT_EQ(Calls("SECKFMOpen"), 0);
}

TEST_F(NoteLoopTest, SealedNoteIsDecryptedWithTheIdFile) {
  SetId(L"imke.id", L"Rittersporn");
  EXPECT_TRUE(Walk({0x90A}));
  EXPECT_NE(ReadBytes(PathOf(L"data\\0000090A.dxl")).find("4711"), std::string::npos);
}

constexpr char kNoKeyLine[] =
    "#WARNING# - Major: Error decrypting note 0000090A "
    "(Document cannot be decrypted: the key is missing from the ID file)";

TEST_F(NoteLoopTest, SealedNoteWithoutIdFileIsAMajorLine) {
  SetId(L"", L"Rittersporn");
  EXPECT_TRUE(Walk({0x90A, 0x80000002}));
  EXPECT_EQ(LogLines(), Lines{kNoKeyLine});
  EXPECT_EQ(Calls("SECKFMOpen"), 0);
}

TEST_F(NoteLoopTest, SealedNoteWithoutPasswordIsAMajorLine) {
  SetId(L"imke.id", L"");
  EXPECT_TRUE(Walk({0x90A}));
  EXPECT_EQ(LogLines(), Lines{kNoKeyLine});
}

TEST_F(NoteLoopTest, SealedNoteWithWrongPasswordIsAMajorLine) {
  SetId(L"imke.id", L"wrong");
  EXPECT_TRUE(Walk({0x90A}));
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - Major: Error decrypting note 0000090A (Wrong password)"});
}

TEST_F(NoteLoopTest, SealedNoteThatCannotBeDecryptedIsNotExported) {
  EXPECT_TRUE(Walk({0x90A, 0x80000002}));
  EXPECT_FALSE(HasData(L"0000090A"));
  EXPECT_TRUE(HasData(L"80000002"));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, LastNoteThatCannotBeDecryptedLeavesNoMarker) {
  EXPECT_TRUE(Walk({0x90A}));
  EXPECT_FALSE(HasMarker());
}

TEST_F(NoteLoopTest, SealedNoteThatCannotBeDecryptedIsIndexed) {
  EXPECT_TRUE(Walk({0x90A}));
  EXPECT_EQ(ReadLines(PathOf(L"unidindex.txt")).size(), 1u);
}

struct DesignFailure {
  const char* name;
  int status;
  const char* line;
};

class DesignFailureInLoop : public NoteLoopTest, public testing::WithParamInterface<DesignFailure> {
 protected:
  bool WalkWithFailure() {
    SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "status": )" +
              std::to_string(GetParam().status) + "}]");
    return Walk({0x902, 0x906});
  }
};

TEST_P(DesignFailureInLoop, EndsTheWalk) {
  EXPECT_FALSE(WalkWithFailure());
  EXPECT_EQ(Calls("NSFNoteOpen"), 1);
}

TEST_P(DesignFailureInLoop, IsAnErrorLine) {
  WalkWithFailure();
  EXPECT_EQ(LogLines(), Lines{GetParam().line});
}

TEST_P(DesignFailureInLoop, LeavesNoMarker) {
  WalkWithFailure();
  EXPECT_FALSE(HasMarker());
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, DesignFailureInLoop,
    testing::Values(
        DesignFailure{
            "Status6967", 6967,
            "#ERROR# - Unable to export design: Design of the database cannot be exported"},
        DesignFailure{"Status6968", 6968,
                      "#ERROR# - Unable to export design: Design of the database is hidden"}),
    kNameOf);

TEST_F(NoteLoopTest, StatusBesideTheDesignFailuresGoesOn) {
  SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "status": 6966},
                {"entry": "DXLExportNote", "note": "00000906", "status": 6969}])");
  EXPECT_TRUE(Walk({0x902, 0x906}));
  EXPECT_EQ(LogLines().size(), 2u);
}

}  // namespace
}  // namespace larkspan
