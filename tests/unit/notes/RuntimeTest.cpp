#include "notes/Runtime.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

// The texts of the last argument vector of a start that was kept from the library.
Lines handedOver;

notes_api::STATUS LARKSPAN_NOTES_CALL KeepTheVector(int argc, char** argv) {
  handedOver.assign(argv, argv + argc);
  return 1;
}

// The configuration is there; tests change the command line.
class RuntimeTest : public NotesFixture {
 protected:
  RuntimeTest() { Configure(); }

  // The argument vector that the library got, as JSON, after a start with these.
  static std::string VectorFor(const std::wstring& programPath,
                               const std::vector<std::wstring>& runtimeArguments) {
    startStatus_ = StartNotesRuntime(programPath, runtimeArguments);
    return Arguments("NotesInitExtended");
  }

  // The texts of that vector, when the start does not get to the library.
  static Lines TextsFor(const std::wstring& programPath,
                        const std::vector<std::wstring>& runtimeArguments) {
    const ReplacedEntryPoint replaced("NotesInitExtended", KeepTheVector);
    startStatus_ = StartNotesRuntime(programPath, runtimeArguments);
    return handedOver;
  }

  static Status StartConfigured() { return StartNotesRuntime(L"larkspan.exe", {L"=notes.ini"}); }

  static inline Status startStatus_;
};

TEST_F(RuntimeTest, LibraryGetsProgramAndConfiguration) {
  EXPECT_EQ(VectorFor(L"C:\\larkspan.exe", {L"=notes.ini"}),
            R"({"argc":2,"argv":["C:\\larkspan.exe","=notes.ini"]})");
  EXPECT_TRUE(startStatus_.ok());
}

TEST_F(RuntimeTest, LibraryGetsProgramAloneWithoutConfiguration) {
  EXPECT_EQ(TextsFor(L"larkspan.exe", {}), Lines{"larkspan.exe"});
}

TEST_F(RuntimeTest, LastConfigurationWinsAndEveryOneCounts) {
  EXPECT_EQ(VectorFor(L"larkspan.exe", {L"=missing.ini", L"=missing.ini", L"=notes.ini"}),
            R"({"argc":4,"argv":["larkspan.exe","=notes.ini","",""]})");
  EXPECT_TRUE(startStatus_.ok());
}

TEST_F(RuntimeTest, EarlierConfigurationIsNotUsed) {
  VectorFor(L"larkspan.exe", {L"=notes.ini", L"=missing.ini"});
  EXPECT_EQ(startStatus_.ErrorNumber(), 0x1A5);
}

TEST_F(RuntimeTest, ProgramPathIsInTheAnsiCodePage) {
  EXPECT_EQ(VectorFor(L"C:\\L\u00E4rche.exe", {L"=notes.ini"}),
            "{\"argc\":2,\"argv\":[\"C:\\\\L\u00E4rche.exe\",\"=notes.ini\"]}");
}

TEST_F(RuntimeTest, ProgramPathOf259BytesIsWhole) {
  EXPECT_EQ(VectorFor(std::wstring(259, L'a'), {L"=notes.ini"}),
            "{\"argc\":2,\"argv\":[\"" + std::string(259, 'a') + "\",\"=notes.ini\"]}");
}

TEST_F(RuntimeTest, LongerProgramPathIsCutAt259Bytes) {
  EXPECT_EQ(VectorFor(std::wstring(260, L'a'), {L"=notes.ini"}),
            "{\"argc\":2,\"argv\":[\"" + std::string(259, 'a') + "\",\"=notes.ini\"]}");
}

TEST_F(RuntimeTest, LongerConfigurationIsCutAt259Bytes) {
  EXPECT_EQ(TextsFor(L"larkspan.exe", {L"=" + std::wstring(5000, L'a')}),
            (Lines{"larkspan.exe", "=" + std::string(258, 'a')}));
}

TEST_F(RuntimeTest, EmptyProgramPathIsHandedOver) {
  EXPECT_EQ(VectorFor(L"", {L"=notes.ini"}), R"({"argc":2,"argv":["","=notes.ini"]})");
}

bool vectorEndsWithNull = false;

notes_api::STATUS LARKSPAN_NOTES_CALL LookBehindTheVector(int argc, char** argv) {
  vectorEndsWithNull = argv[argc] == nullptr;
  return 1;
}

TEST_F(RuntimeTest, VectorEndsWithANullPointer) {
  const ReplacedEntryPoint replaced("NotesInitExtended", LookBehindTheVector);
  EXPECT_FALSE(StartConfigured().ok());
  EXPECT_TRUE(vectorEndsWithNull);
}

TEST_F(RuntimeTest, StatusOfTheStartIsReturnedWhole) {
  SetFaults(R"([{"entry": "NotesInitExtended", "status": "0x8123"}])");
  EXPECT_EQ(StartConfigured().code(), 0x8123);
}

TEST_F(RuntimeTest, StartIsNotLogged) {
  EXPECT_TRUE(StartConfigured().ok());
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(RuntimeTest, EndOfAStartedRuntimeIsLoggedBeforeAndAfter) {
  EXPECT_TRUE(StartConfigured().ok());
  EndNotesRuntime();
  EXPECT_EQ(Calls("NotesTerm"), 1);
  EXPECT_EQ(LogLines(), (Lines{"#DEBUG# - Trying to NotesTerm", "#DEBUG# - NotesTermed"}));
}

class RuntimeEndTest : public RuntimeTest {
 protected:
  RuntimeEndTest() { path_ = PathOf(L"log.txt"); }

  static void LARKSPAN_NOTES_CALL RecordLines() {
    lines_ = ReadLines(path_);
    Original("NotesTerm", notes_api::NotesTerm)();
  }

  static inline std::wstring path_;
  static inline Lines lines_;
};

TEST_F(RuntimeEndTest, FirstLineIsWrittenBeforeTheLibraryEnds) {
  EXPECT_TRUE(StartConfigured().ok());
  const ReplacedEntryPoint replaced("NotesTerm", RecordLines);
  EndNotesRuntime();
  EXPECT_EQ(lines_, Lines{"#DEBUG# - Trying to NotesTerm"});
}

TEST_F(RuntimeTest, SecondEndDoesNothing) {
  EXPECT_TRUE(StartConfigured().ok());
  EndNotesRuntime();
  EndNotesRuntime();
  EXPECT_EQ(LogLines().size(), 2u);
}

TEST_F(RuntimeTest, RuntimeThatWasNotStartedIsNotEnded) {
  EndNotesRuntime();
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(RuntimeTest, RuntimeThatDidNotStartIsNotEnded) {
  SetFaults(R"([{"entry": "NotesInitExtended", "status": 1}])");
  EXPECT_FALSE(StartConfigured().ok());
  EndNotesRuntime();
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(RuntimeTest, RuntimeStartsAgainAfterItsEnd) {
  EXPECT_TRUE(StartConfigured().ok());
  EndNotesRuntime();
  EXPECT_TRUE(StartConfigured().ok());
  EndNotesRuntime();
  EXPECT_EQ(LogLines().size(), 4u);
}

}  // namespace
}  // namespace larkspan
