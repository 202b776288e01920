#include "dxl/ViewDocument.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "dxl/NumberSettings.h"
#include "notes/LibraryFunctions.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::DHANDLE;
using notes_api::NOTEID;
using notes_api::STATUS;

constexpr std::uint32_t kView = 0x11A;

int purges = 0;
STATUS purgeResult = 0;

STATUS LARKSPAN_NOTES_CALL CountPurges(DHANDLE viewDatabase, DHANDLE dataDatabase, NOTEID view) {
  EXPECT_EQ(viewDatabase, dataDatabase);
  EXPECT_EQ(view, kView);
  ++purges;
  return purgeResult;
}

// Writes the document of the view 11A of a database that a test describes.
class ViewDocumentTest : public NotesFixture {
 public:
  static Lines OrderOfCalls() { return Order({"NIFCloseCollection", "NSFNoteClose"}); }

 protected:
  ViewDocumentTest() {
    purges = 0;
    purgeResult = 0;
    FoundLibraryFunctions().purgeCollection = CountPurges;
  }

  // One view with these flags, none when null, and these keys of its `view` in JSON.
  void WriteViewDatabase(const char* flags, const std::string& view) {
    const std::string items =
        flags == nullptr ? "" : std::string(R"({"name": "$Flags", "text": ")") + flags + "\"}";
    WriteDatabase(R"({"notes": [{"id": "0000011A", "class": "view", "items": [)" + items +
                  R"(], "view": {)" + view + "}}]}");
  }

  // Opens the database, then sets the faults.
  void Write(const std::string& faults = "[]") {
    Start();
    const Database database = OpenTestDatabase();
    SetFaults(faults);
    WriteViewDocument(database, kView, GetNumberSettings(), path_);
    SetFaults("[]");
  }

  std::string Written(const char* flags, const std::string& view) {
    WriteViewDatabase(flags, view);
    Write();
    return Exists(path_) ? ReadBytes(path_) : "none";
  }

  bool IsWritten(const char* flags) { return Written(flags, R"("indexed": true)") != "none"; }

  // Flags of the openings of the index, in their order.
  std::string Openings() const { return Arguments("NIFOpenCollection"); }

  const std::wstring path_ = PathOf(L"view.xml");
};

constexpr char kHead[] = "<?xml version='1.0' encoding='utf-8'?>\r\n";
constexpr char kTwoEntries[] =
    R"("columns": [{"title": "Plant"}],
       "entries": [{"note": "000008FA", "values": [{"text": "Iris"}]},
                   {"category": true, "indent": 1, "values": [{"text": "Trees"}]}])";

TEST_F(ViewDocumentTest, EachEntryIsAnElement) {
  EXPECT_EQ(Written("", kTwoEntries), std::string(kHead) +
                                          "<view>\r\n"
                                          "    <document noteId=\"000008FA\">\r\n"
                                          "        <value>\r\n"
                                          "            <text>Iris</text>\r\n"
                                          "        </value>\r\n"
                                          "    </document>\r\n"
                                          "    <category indent=\"1\">\r\n"
                                          "        <value>\r\n"
                                          "            <text>Trees</text>\r\n"
                                          "        </value>\r\n"
                                          "    </category>\r\n"
                                          "</view>\r\n");
}

TEST_F(ViewDocumentTest, EmptyViewIsAnEmptyElement) {
  EXPECT_EQ(Written("", R"("columns": [{"title": "Plant"}])"), std::string(kHead) + "<view/>\r\n");
}

struct Flags {
  const char* flags;
  bool isWritten;
};

class ViewFlagsTest : public ViewDocumentTest, public testing::WithParamInterface<Flags> {};

TEST_P(ViewFlagsTest, DecideWhetherAViewIsExported) {
  EXPECT_EQ(IsWritten(GetParam().flags), GetParam().isWritten);
  EXPECT_EQ(LogLines(), Lines());
}

// A text of "$Flags" is read up to 99 bytes; what is behind does not count.
const std::string kHiddenBehind99 = std::string(99, 'Y') + "G";
const std::string kHiddenAt99 = std::string(98, 'Y') + "G";

INSTANTIATE_TEST_SUITE_P(Views, ViewFlagsTest,
                         testing::Values(Flags{nullptr, true}, Flags{"", true}, Flags{"Y", true},
                                         Flags{"F", true}, Flags{"FG", true}, Flags{"G", false},
                                         Flags{"^", false}, Flags{"4", false}, Flags{"n", false},
                                         Flags{"F0", false}, Flags{kHiddenBehind99.c_str(), true},
                                         Flags{kHiddenAt99.c_str(), false}));

TEST_F(ViewDocumentTest, ViewWithoutAFormatIsLeftOut) {
  EXPECT_EQ(Written("", R"("format": false)"), "none");
  EXPECT_EQ(Calls("NIFOpenCollection"), 0);
  EXPECT_EQ(purges, 0);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ViewDocumentTest, ViewLeftOutByItsFlagsIsNotOpened) {
  EXPECT_FALSE(IsWritten("G"));
  EXPECT_EQ(Calls("NIFOpenCollection"), 0);
  EXPECT_EQ(purges, 0);
}

TEST_F(ViewDocumentTest, IndexThatWasThereIsTriedFirstAndKept) {
  EXPECT_TRUE(IsWritten(""));
  EXPECT_EQ(Openings(), R"([{"flags":6,"unreadList":0,"view":282},)"
                        R"({"flags":0,"unreadList":0,"view":282}])");
  EXPECT_EQ(Order({"NIFOpenCollection", "NIFCloseCollection", "NIFReadEntries"}),
            (Lines{"NIFOpenCollection", "NIFCloseCollection", "NIFOpenCollection", "NIFReadEntries",
                   "NIFCloseCollection"}));
  EXPECT_EQ(purges, 0);
}

TEST_F(ViewDocumentTest, IndexThatHadToBeBuiltIsDropped) {
  EXPECT_NE(Written("", kTwoEntries), "none");
  EXPECT_EQ(purges, 1);
  EXPECT_EQ(LogLines(), Lines());
}

// The library refuses to drop an index that is still open, and a note must not be closed before.
TEST_F(ViewDocumentTest, IndexIsDroppedBetweenItsCloseAndThatOfTheNote) {
  FoundLibraryFunctions().purgeCollection = reinterpret_cast<notes_api::PurgeCollectionFunction>(
      OriginalEntryPoint("NIFPurgeCollection"));
  EXPECT_NE(Written("", kTwoEntries), "none");
  const Lines order = Order({"NIFCloseCollection", "NIFPurgeCollection", "NSFNoteClose"});
  EXPECT_EQ(order, (Lines{"NIFCloseCollection", "NIFPurgeCollection", "NSFNoteClose"}));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ViewDocumentTest, FolderIsOpenedOnceAndNeverDropped) {
  EXPECT_NE(Written("F", kTwoEntries), "none");
  EXPECT_EQ(Openings(), R"([{"flags":0,"unreadList":0,"view":282}])");
  EXPECT_EQ(purges, 0);
}

TEST_F(ViewDocumentTest, IndexThatCannotBeDroppedIsTwoDebugLines) {
  purgeResult = 6409;
  EXPECT_NE(Written("", kTwoEntries), "none");
  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0], "#DEBUG# - Purging collection 11a failed");
  EXPECT_TRUE(lines[1].starts_with("#DEBUG# - Error '") && lines[1].ends_with("'")) << lines[1];
  EXPECT_FALSE(lines[1].ends_with("''"));
}

struct SilentFailure {
  const char* fault;
  int purges;
};

class ViewDocumentFailureTest : public ViewDocumentTest,
                                public testing::WithParamInterface<SilentFailure> {};

TEST_P(ViewDocumentFailureTest, LeavesNoFileAndNoLine) {
  WriteViewDatabase("", kTwoEntries);
  Write(GetParam().fault);
  EXPECT_FALSE(Exists(path_));
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(purges, GetParam().purges);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, ViewDocumentFailureTest,
    testing::Values(SilentFailure{R"([{"entry": "NSFNoteOpen", "status": 1}])", 0},
                    SilentFailure{R"([{"entry": "NSFItemInfo", "status": 1}])", 0},
                    // Whatever keeps the index from opening, it may have been built.
                    SilentFailure{R"([{"entry": "NIFOpenCollection", "status": 1}])", 1},
                    SilentFailure{R"([{"entry": "NIFOpenCollection", "call": 2, "status": 1}])", 1},
                    SilentFailure{R"([{"entry": "NIFReadEntries", "status": 1}])", 1},
                    SilentFailure{R"([{"entry": "OSLockObject", "status": 1}])", 1}));

// 3,000 entries do not fit into one reading.
constexpr char kManyEntries[] = R"("columns": [{"title": "Plant"}], "generateEntries": 3000)";

TEST_F(ViewDocumentTest, EntriesOfAllReadingsAreWritten) {
  const std::string document = Written("", kManyEntries);
  EXPECT_GT(Calls("NIFReadEntries"), 1);
  std::size_t entries = 0;
  for (std::size_t at = document.find("noteId="); at != std::string::npos;
       at = document.find("noteId=", at + 1)) {
    ++entries;
  }
  EXPECT_EQ(entries, 3000U);
  EXPECT_TRUE(document.ends_with("</view>\r\n"));
}

TEST_F(ViewDocumentTest, ReadingThatFailsAfterSomeEntriesLeavesNoFile) {
  WriteViewDatabase("", kManyEntries);
  Write(R"([{"entry": "NIFReadEntries", "call": 2, "status": 6409}])");
  EXPECT_EQ(Calls("NIFReadEntries"), 2);
  EXPECT_FALSE(Exists(path_));
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(purges, 1);
}

TEST_F(ViewDocumentTest, EarlierFileStaysWhenTheReadingFails) {
  WriteBytes(path_, "earlier");
  WriteViewDatabase("", kTwoEntries);
  Write(R"([{"entry": "NIFReadEntries", "status": 6409}])");
  EXPECT_EQ(ReadBytes(path_), "earlier");
}

TEST_F(ViewDocumentTest, ReadingAsksForAllThatFits) {
  EXPECT_NE(Written("", kTwoEntries), "none");
  EXPECT_EQ(Arguments("NIFReadEntries"),
            R"({"mask":49401,"returnCount":4294967295,"returnNavigator":1,"skipCount":1,)"
            R"("skipNavigator":1,"view":282})");
}

STATUS LARKSPAN_NOTES_CALL PromiseMoreForEver(notes_api::HCOLLECTION,
                                              notes_api::CollectionPosition*, notes_api::WORD,
                                              notes_api::DWORD, notes_api::WORD, notes_api::DWORD,
                                              notes_api::DWORD, DHANDLE* buffer, notes_api::WORD*,
                                              notes_api::DWORD*, notes_api::DWORD* returned,
                                              notes_api::WORD* signals) {
  *buffer = 0;
  *returned = 0;
  *signals = notes_api::kSignalMoreToDo;
  return 0;
}

TEST_F(ViewDocumentTest, ReadingThatPromisesMoreAndGivesNothingEnds) {
  WriteViewDatabase("", kTwoEntries);
  const ReplacedEntryPoint replaced("NIFReadEntries", PromiseMoreForEver);
  Write();
  EXPECT_FALSE(Exists(path_));
}

notes_api::CollectionPosition firstPosition;

STATUS LARKSPAN_NOTES_CALL
RememberPosition(notes_api::HCOLLECTION collection, notes_api::CollectionPosition* position,
                 notes_api::WORD skipNavigator, notes_api::DWORD skipCount,
                 notes_api::WORD returnNavigator, notes_api::DWORD returnCount,
                 notes_api::DWORD mask, DHANDLE* buffer, notes_api::WORD* bufferLength,
                 notes_api::DWORD* skipped, notes_api::DWORD* returned, notes_api::WORD* signals) {
  firstPosition = *position;
  return Original("NIFReadEntries", RememberPosition)(
      collection, position, skipNavigator, skipCount, returnNavigator, returnCount, mask, buffer,
      bufferLength, skipped, returned, signals);
}

TEST_F(ViewDocumentTest, ReadingBeginsBeforeTheFirstEntry) {
  WriteViewDatabase("", kTwoEntries);
  const ReplacedEntryPoint replaced("NIFReadEntries", RememberPosition);
  Write();
  EXPECT_EQ(firstPosition.level, 0);
  EXPECT_EQ(firstPosition.tumbler[0], 0U);
  EXPECT_TRUE(Exists(path_));
}

STATUS LARKSPAN_NOTES_CALL ThrowInstead(notes_api::HCOLLECTION, notes_api::CollectionPosition*,
                                        notes_api::WORD, notes_api::DWORD, notes_api::WORD,
                                        notes_api::DWORD, notes_api::DWORD, DHANDLE*,
                                        notes_api::WORD*, notes_api::DWORD*, notes_api::DWORD*,
                                        notes_api::WORD*) {
  throw std::runtime_error("out of the library");
}

TEST_F(ViewDocumentTest, ExceptionOnTheWayDropsTheIndexToo) {
  WriteViewDatabase("", kTwoEntries);
  Start();
  const Database database = OpenTestDatabase();
  const ReplacedEntryPoint replaced("NIFReadEntries", ThrowInstead);
  EXPECT_THROW(WriteViewDocument(database, kView, GetNumberSettings(), path_), std::runtime_error);
  EXPECT_EQ(purges, 1);
  EXPECT_FALSE(Exists(path_));
}

TEST_F(ViewDocumentTest, FileThatCannotBeWrittenIsLogged) {
  WriteViewDatabase("", kTwoEntries);
  const FileFaults faults("open view.xml.new * accessDenied; open view.xml * accessDenied");
  Write();
  EXPECT_FALSE(Exists(path_));
  ASSERT_EQ(LogLines().size(), 1U);
  EXPECT_TRUE(LogLines()[0].starts_with("#WARNING# - Unable to write "));
  EXPECT_TRUE(LogLines()[0].ends_with("\\view.xml"));
  EXPECT_EQ(purges, 1);
}

TEST_F(ViewDocumentTest, ConstantsOfTheColumnsStandInDocumentsWithoutValues) {
  EXPECT_EQ(Written("", R"("columns": [{"constant": {"text": "always"}}],
                           "entries": [{"note": "000008FA"}, {"total": true}])"),
            std::string(kHead) +
                "<view>\r\n"
                "    <document noteId=\"000008FA\">\r\n"
                "        <value>\r\n"
                "            <text>always</text>\r\n"
                "        </value>\r\n"
                "    </document>\r\n"
                "    <total/>\r\n"
                "</view>\r\n");
}

TEST_F(ViewDocumentTest, EntriesThatCannotBeReadLeaveNoFile) {
  WriteViewDatabase("", kTwoEntries);
  // The first lock is that of the view's format.
  Write(R"([{"entry": "OSLockObject", "call": 2, "status": 1}])");
  EXPECT_FALSE(Exists(path_));
  EXPECT_EQ(purges, 1);
}

TEST_F(ViewDocumentTest, NothingIsReadThatCouldNotBeWritten) {
  WriteViewDatabase("", kTwoEntries);
  const FileFaults faults("open (temporary) * accessDenied");
  Write();
  EXPECT_EQ(Calls("NIFReadEntries"), 0);
  ASSERT_EQ(LogLines().size(), 1U);
  EXPECT_TRUE(LogLines()[0].starts_with("#WARNING# - Unable to write "));
}

// A summary that claims more bytes than the reading gave hides where the next entry begins.
TEST_F(ViewDocumentTest, EntryBehindWhichNoOtherIsFoundAbandonsTheDocument) {
  EXPECT_EQ(Written("", R"("columns": [{"title": "Plant"}],
                           "entries": [{"note": "000008FA", "values": [{"text": "Iris"}]},
                                       {"note": "000008FE", "summaryBytes": "FFFF 0000"}])"),
            "none");
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ViewDocumentTest, ValueThatRunsPastItsSummaryEndsTheEntryAlone) {
  const std::string document = Written("", R"("columns": [{"title": "Plant"}, {"title": "Kind"}],
                     "entries": [{"note": "000008FA", "summaryBytes":
                                  "1000 0200 0100 0300 0100 FFFF 41 0005 42"},
                                 {"note": "000008FE", "values": [{"text": "Yew"}]}])");
  EXPECT_NE(document.find("<text>B</text>"), std::string::npos) << document;
  EXPECT_NE(document.find("<text>Yew</text>"), std::string::npos) << document;
}

Lines callsBeforeThePurge;

STATUS LARKSPAN_NOTES_CALL RecordOrderAndRefuse(DHANDLE, DHANDLE, NOTEID) {
  callsBeforeThePurge = ViewDocumentTest::OrderOfCalls();
  return 6409;
}

TEST_F(ViewDocumentTest, PurgeAfterAnExceptionFollowsTheCloseAndHasItsTwoLines) {
  WriteViewDatabase("", kTwoEntries);
  Start();
  const Database database = OpenTestDatabase();
  FoundLibraryFunctions().purgeCollection = RecordOrderAndRefuse;
  const ReplacedEntryPoint replaced("NIFReadEntries", ThrowInstead);
  EXPECT_THROW(WriteViewDocument(database, kView, GetNumberSettings(), path_), std::runtime_error);
  EXPECT_EQ(callsBeforeThePurge, Lines{"NIFCloseCollection"});
  ASSERT_EQ(LogLines().size(), 2U);
  EXPECT_EQ(LogLines()[0], "#DEBUG# - Purging collection 11a failed");
  EXPECT_TRUE(LogLines()[1].starts_with("#DEBUG# - Error '"));
}

}  // namespace
}  // namespace larkspan
