// The two listings in whole runs.
#include <set>

#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class ListingSystemTest : public SystemTest {
 protected:
  ListingSystemTest() { run_.AddConfiguration("MailServer=Garden"); }

  // Runs the program with a configuration and these arguments.
  ProgramResult List(std::vector<std::wstring> arguments) {
    arguments.insert(arguments.begin(), {run_.ConfigurationArgument(), L"-o", run_.output()});
    return run_.RunArguments(arguments);
  }
};

TEST_F(ListingSystemTest, AScanOfThisMachineIsByteForByteAsExpected) {
  EXPECT_EQ(List({L"-s", L"<Local>", L"-scan"}).exitCode, 0u);
  // The first line is the path of the samples, which lie somewhere else on each machine.
  OutputTree tree = run_.Tree();
  const std::size_t end = tree["scan.txt"].find("\r\n");
  ASSERT_TRUE(tree["scan.txt"].substr(0, end).ends_with("/standin/samples"));
  tree["scan.txt"].replace(0, end, "SAMPLES");
  EXPECT_EQ(CompareWithExpected(tree, "scan-local"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ListingSystemTest, AScanOfAServerIsByteForByteAsExpected) {
  EXPECT_EQ(List({L"-s", L"Garden", L"-scan"}).exitCode, 0u);
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "scan-garden"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ListingSystemTest, AScanOfAServerWithOtherLettersIsByteForByteAsExpected) {
  EXPECT_EQ(List({L"-s", L"Glash\u00e4user", L"-scan"}).exitCode, 0u);
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "scan-glashaeuser"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ListingSystemTest, AScanOfTenThousandDatabasesHasALineEach) {
  EXPECT_EQ(List({L"-s", L"Large", L"-scan"}).exitCode, 0u);
  EXPECT_EQ(OutputLines(L"scan.txt").size(), 10001u);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

// The lines before it are on disk, whole.
TEST_F(ListingSystemTest, ATextThatIsTooLongEndsTheProcessBehindTheLastWholeLine) {
  EXPECT_EQ(List({L"-s", L"Overlong", L"-scan"}).exitCode, 0xC0000409u);
  const std::string listing = run_.OutputFile(L"scan.txt");
  EXPECT_TRUE(listing.starts_with("Overlong\r\n") && listing.ends_with("\r\n")) << listing;
}

// Nobody would be there to close a dialog.
TEST_F(ListingSystemTest, AnExceptionOutOfAReleaseEndsTheProcessAtOnce) {
  run_.SetFaults(R"([{"entry": "NSFDbClose", "action": "throw"}])");
  const ProgramResult result = List({L"-s", L"Garden", L"-scan"});
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "scan-garden"), "");
}

// Every way in which the library can crash a listing while it searches, behind the first line.
struct ListingCrash {
  const char* name;
  const char* fault;
  std::set<DWORD> exitCodes;
  const char* line;
};

class ListingCrashSystemTest : public ListingSystemTest,
                               public ::testing::WithParamInterface<ListingCrash> {};

TEST_P(ListingCrashSystemTest, IsToldAndEndsTheRuntimeAndKeepsWhatWasWritten) {
  run_.SetFaults(std::string(R"([{"entry": "NSFSearch", "matches": 1, )") + GetParam().fault +
                 "}]");
  const DWORD exitCode = List({L"-s", L"Garden", L"-scan", L"-debug"}).exitCode;
  EXPECT_TRUE(GetParam().exitCodes.contains(exitCode)) << exitCode;
  EXPECT_EQ(LogLines(), (Lines{std::string("#ERROR# - ") + GetParam().line,
                               "#DEBUG# - Trying to NotesTerm", "#DEBUG# - NotesTermed"}));
  EXPECT_EQ(OutputLines(L"scan.txt").size(), 2u);
  EXPECT_EQ(run_.LedgerLines().size(), 1u);
}

constexpr char kEndedByACrash[] = "The listing was ended by a crash";

// A thread without stack may end before it tells a code.
INSTANTIATE_TEST_SUITE_P(
    EveryWay, ListingCrashSystemTest,
    ::testing::Values(
        ListingCrash{
            "AccessViolation", R"("action": "accessViolation")", {0xC0000005}, kEndedByACrash},
        ListingCrash{
            "StackOverflow", R"("action": "stackOverflow")", {0xC00000FD, 0}, kEndedByACrash},
        ListingCrash{"EndOfTheThread", R"("action": "endThread")", {0}, kEndedByACrash},
        ListingCrash{"ForeignException",
                     R"("action": "exception", "code": "0xE06D7363")",
                     {0xE06D7363},
                     "The listing was ended by an exception"}),
    [](const auto& test) { return std::string(test.param.name); });

// As a throw of another compiler's code is.
TEST_F(ListingSystemTest, AnExceptionOfAnotherCompilerAtTheEndOfTheRuntimeIsAWarning) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "exception", "code": "0xE06D7363"}])");
  List({L"-s", L"Garden", L"-scan"});
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - The end of the Notes runtime was ended by an exception"});
  EXPECT_EQ(OutputLines(L"scan.txt").size(), 4u);
}

TEST_F(ListingSystemTest, ACrashOfTheServersIsToldToo) {
  run_.SetFaults(R"([{"entry": "NAMELookup", "action": "accessViolation"}])");
  EXPECT_EQ(List({L"-servers"}).exitCode, 0xC0000005u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - The listing was ended by a crash"});
  EXPECT_EQ(run_.LedgerLines().size(), 1u);
}

TEST_F(ListingSystemTest, AFilterOfTheLibraryTakesNoClosingAway) {
  run_.AddConfiguration("StandinInstallsFilter=1");
  run_.SetFaults(R"([{"entry": "NSFSearch", "action": "accessViolation"}])");
  EXPECT_EQ(List({L"-s", L"Garden", L"-scan"}).exitCode, 0xC0000005u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - The listing was ended by a crash"});
}

TEST_F(ListingSystemTest, TheServersAreByteForByteAsExpected) {
  const ProgramResult result = List({L"-servers"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput, "");
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "servers"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ListingSystemTest, AScanComesBeforeTheServersAndBothBeforeAnExport) {
  List({L"-servers", L"-s", L"<Local>", L"-scan", L"-p", L"sample.nsf", L"-archive"});
  EXPECT_TRUE(run_.HasOutputFile(L"scan.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"servers.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"audit.txt"));
}

TEST_F(ListingSystemTest, TheServersComeBeforeAnExport) {
  List({L"-servers", L"-p", L"sample.nsf", L"-archive"});
  EXPECT_TRUE(run_.HasOutputFile(L"servers.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"audit.txt"));
}

TEST_F(ListingSystemTest, AMissingFolderIsSilentAndNoFault) {
  run_.SetOutput(run_.folder() + L"\\missing");
  EXPECT_EQ(List({L"-s", L"<Local>", L"-scan"}).exitCode, 0u);
  EXPECT_EQ(List({L"-servers"}).exitCode, 0u);
  EXPECT_EQ(run_.LedgerLines().size(), 0u);
}

TEST_F(ListingSystemTest, ADirectoryThatCannotBeOpenedIsAnError) {
  EXPECT_EQ(List({L"-s", L"Nowhere", L"-scan"}).exitCode, 0u);
  ASSERT_EQ(LogLines().size(), 1u);
  EXPECT_TRUE(LogLines()[0].starts_with("#ERROR# - Error opening root directory ("));
  EXPECT_EQ(run_.OutputFile(L"scan.txt"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ListingSystemTest, AnIdThatCannotBeSwitchedIsAnErrorInBothModes) {
  for (const wchar_t* mode : {L"-scan", L"-servers"}) {
    List({mode, L"-s", L"<Local>", L"-id", L"ids/missing.id", L"-password", L"x"});
  }
  ASSERT_EQ(LogLines().size(), 2u);
  for (const std::string& line : LogLines()) {
    EXPECT_TRUE(line.starts_with("#ERROR# - Unable to switch id (")) << line;
  }
}

TEST_F(ListingSystemTest, ARuntimeThatDoesNotStartIsAnErrorInBothModes) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "status": "0x1A5"}])");
  for (const wchar_t* mode : {L"-scan", L"-servers"}) {
    EXPECT_EQ(List({mode, L"-s", L"<Local>"}).exitCode, 0u);
  }
  const std::string line = "#ERROR# - Notes initialization failed (1A5)";
  EXPECT_EQ(LogLines(), (Lines{line, line}));
}

}  // namespace
}  // namespace larkspan::testing
