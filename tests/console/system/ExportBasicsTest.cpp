// Exports that come to their end: options, exit codes, what stands in outcome.json.
#include <filesystem>

#include "tests/console/system/ExportTest.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;

constexpr char kOpenFails[] = R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 546})";

class ExportBasicsTest : public ExportTest {
 protected:
  void AddNotes(int count, const std::string& faults = "") {
    run_.AddDatabase(database_, DocumentsJson(count, faults.empty() ? "" : FaultsMember(faults)));
  }

  // Nothing was made of the folder's content.
  void ExpectCouldNotRun(const ConsoleEnd& end, const std::string& reason) const {
    EXPECT_EQ(end.code, 2u);
    EXPECT_TRUE(Holds(end.output, reason)) << end.output;
  }
};

TEST_F(ExportBasicsTest, AWholeExportEndsWithZeroAndIsThatOfTheExporter) {
  const std::string database = DocumentsJson(3);
  run_.AddDatabase(database_, database);
  const ConsoleEnd end = Export();
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_EQ(end.errors, "");
  EXPECT_TRUE(Holds(end.output, "3 of 3 notes exported")) << end.output;
  EXPECT_EQ(testing::DescribeDifferences(CleanTree(database), NotesTree()), "");
  EXPECT_FALSE(Exists(out_ + L"\\log.txt"));
}

TEST_F(ExportBasicsTest, TheSampleIsWhole) {
  run_.WriteConfigurationTo(run_.folder() + L"\\notes.ini");
  database_ = L"sample.nsf";
  EXPECT_EQ(Export().code, 0u);
  EXPECT_EQ(Outcome().at("account").at("notes").at("listed"), 55);
  EXPECT_FALSE(Outcome().at("account").at("records").empty());
}

TEST_F(ExportBasicsTest, AnEmptyDatabaseIsWhole) {
  run_.AddDatabase(database_, "{}");
  const ConsoleEnd end = Export();
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_EQ(Outcome().at("exitCode"), 0);
}

TEST_F(ExportBasicsTest, LossesEndWithThreeAndStandInTheOutcome) {
  AddNotes(3, kOpenFails);
  const ConsoleEnd end = Export();
  EXPECT_EQ(end.code, 3u);
  EXPECT_TRUE(Holds(end.output, "00000906")) << end.output;
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("id"), "00000906");
  EXPECT_EQ(losses[0].at("stage"), "open");
  EXPECT_NE(losses[0].at("cause"), "");
  EXPECT_EQ(Outcome().at("exitCode"), 3);
  EXPECT_NE(Outcome().at("reason"), "");
}

TEST_F(ExportBasicsTest, TheOutcomeTellsTheRun) {
  AddNotes(2);
  Export({L"--server", L"", L"--full-access"});
  const Json outcome = Outcome();
  EXPECT_EQ(outcome.at("state"), "ended");
  EXPECT_EQ(outcome.at("path"), "x.nsf");
  EXPECT_EQ(outcome.at("consoleVersion"), LARKSPAN_VERSION);
  EXPECT_EQ(outcome.at("larkspanVersion"), LARKSPAN_VERSION);
  EXPECT_NE(outcome.at("host"), "");
  EXPECT_NE(outcome.at("user"), "");
  EXPECT_EQ(outcome.at("archive"), true);
  EXPECT_EQ(outcome.at("fullAccess"), true);
  EXPECT_EQ(outcome.at("command").at(0), "export");
  EXPECT_EQ(outcome.at("progress").at("phase"), "ended");
  EXPECT_EQ(outcome.at("progress").at("documents"), 2);
  EXPECT_EQ(outcome.at("progress").at("documentsDone"), 2);
  EXPECT_EQ(outcome.at("account").at("notes").at("exported"), 2);
  EXPECT_EQ(outcome.count("stop"), 0u);
  EXPECT_TRUE(outcome.at("restarts").empty());
  EXPECT_LE(outcome.at("started").get<std::string>(), outcome.at("ended").get<std::string>());
}

TEST_F(ExportBasicsTest, TheOutputFolderIsMadeWithThoseAboveIt) {
  AddNotes(1);
  out_ = run_.folder() + L"\\a\\ö ü\\日本";
  EXPECT_EQ(Export().code, 0u);
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(ExportBasicsTest, AnEmptyOutputFolderIsTaken) {
  AddNotes(1);
  MakeFolder(out_);
  EXPECT_EQ(Export().code, 0u);
}

TEST_F(ExportBasicsTest, AFolderThatIsNotEmptyIsRefusedAndStaysAsItIs) {
  AddNotes(1);
  MakeFolder(out_);
  WriteBytes(out_ + L"\\mine.txt", "mine");
  ExpectCouldNotRun(Export(), "is not empty");
  EXPECT_EQ(testing::ReadOutputTree(out_), (testing::OutputTree{{"mine.txt", "mine"}}));
}

TEST_F(ExportBasicsTest, AFolderThatCannotBeMadeIsToldSo) {
  AddNotes(1);
  WriteBytes(run_.folder() + L"\\file", "");
  out_ = run_.folder() + L"\\file\\out";
  ExpectCouldNotRun(Export(), "cannot be made");
}

TEST_F(ExportBasicsTest, AFileIsNoFolder) {
  AddNotes(1);
  WriteBytes(out_, "mine");
  ExpectCouldNotRun(Export(), "cannot be made");
  EXPECT_EQ(ReadBytes(out_), "mine");
}

TEST_F(ExportBasicsTest, AnUnknownDatabaseCouldNotRunAndTheReasonNamesThePhaseAndTheError) {
  AddNotes(1);
  database_ = L"unbekannt 日本.nsf";
  ExpectCouldNotRun(Export(), "opening the database");
  const std::string reason = Outcome().at("reason");
  EXPECT_TRUE(Holds(reason, "Error opening database (")) << reason;
  EXPECT_EQ(Outcome().at("exitCode"), 2);
  EXPECT_EQ(Outcome().at("state"), "ended");
}

TEST_F(ExportBasicsTest, FullAccessOpensADatabaseThatIsLocked) {
  database_ = L"locked.nsf";
  ExpectCouldNotRun(Export(), "opening the database");
  out_ += L"2";
  EXPECT_EQ(Export({L"--full-access"}).code, 0u);
}

TEST_F(ExportBasicsTest, AServerIsAsked) {
  database_ = L"Österliche Beete.nsf";
  EXPECT_EQ(Export({L"--server", L"Glashäuser"}).code, 0u);
  EXPECT_EQ(Outcome().at("server"), "Glashäuser");
  EXPECT_TRUE(Holds(ReadIfThere(L"audit.txt"), "Archive database server: Glashäuser"));
}

TEST_F(ExportBasicsTest, WithoutViewsThereAreNone) {
  database_ = L"sample.nsf";
  EXPECT_EQ(Export({L"--no-views"}).code, 0u);
  EXPECT_EQ(FilesIn("views"), Lines());
  EXPECT_EQ(Outcome().at("views"), false);
}

TEST_F(ExportBasicsTest, DesignAloneIsThePlainForm) {
  database_ = L"sample.nsf";
  const ConsoleEnd end = Export({L"--design-only"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_EQ(Outcome().at("archive"), false);
  EXPECT_TRUE(Exists(out_ + L"\\0000011A.dxl"));
  EXPECT_FALSE(Exists(out_ + L"\\data"));
  EXPECT_EQ(Outcome().at("account").at("notes").at("exported"), 24);
}

TEST_F(ExportBasicsTest, DebugLinesAreWrittenWhenAskedFor) {
  AddNotes(1);
  EXPECT_EQ(Export({L"--debug"}).code, 0u);
  EXPECT_TRUE(Holds(Log(), "#DEBUG# - Invoking child process"));
}

TEST_F(ExportBasicsTest, WithoutAConfigurationTheReasonSaysSo) {
  AddNotes(1);
  const ConsoleEnd end = Run({L"export", L"--path", database_, L"--out", out_, L"--notes-ini",
                              run_.folder() + L"\\none.ini"});
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output, "Unable to locate notes.ini")) << end.output;
}

TEST_F(ExportBasicsTest, TheConfigurationMayHaveAnyName) {
  AddNotes(1);
  const std::wstring configuration = run_.folder() + L"\\my notes.ini";
  run_.WriteConfigurationTo(configuration);
  EXPECT_EQ(
      Run({L"export", L"--path", database_, L"--out", out_, L"--notes-ini", configuration}).code,
      0u);
}

TEST_F(ExportBasicsTest, ADatabaseMayHaveAnyName) {
  database_ = L"Ordner ü\\Übersicht 日本 \U0001F331.nsf";
  AddNotes(1);
  EXPECT_EQ(Export().code, 0u);
  EXPECT_EQ(Outcome().at("path"), "Ordner ü\\Übersicht 日本 \U0001F331.nsf");
}

TEST_F(ExportBasicsTest, QuietSaysNothingOfAWholeExport) {
  AddNotes(1);
  const ConsoleEnd end = Export({L"--quiet"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(end.output, "");
  EXPECT_EQ(end.errors, "");
}

TEST_F(ExportBasicsTest, QuietSaysWhatWentWrongOnStandardError) {
  AddNotes(2, kOpenFails);
  const ConsoleEnd end = Export({L"--quiet"});
  EXPECT_EQ(end.code, 3u);
  EXPECT_EQ(end.output, "");
  EXPECT_TRUE(Holds(end.errors, "one loss")) << end.errors;
}

TEST_F(ExportBasicsTest, EventsComeOneALineInTheirOrder) {
  AddNotes(3, kOpenFails);
  const ConsoleEnd end = Export({L"--json"});
  EXPECT_EQ(end.code, 3u);
  const std::vector<Json> events = EventsIn(end.output);
  ASSERT_GT(events.size(), 3u);
  for (std::size_t i = 0; i < events.size(); ++i) {
    EXPECT_EQ(events[i].at("sequence"), i + 1);
    EXPECT_EQ(events[i].at("version"), 1);
  }
  EXPECT_EQ(events.front().at("kind"), "start");
  EXPECT_EQ(events.front().at("path"), "x.nsf");
  EXPECT_EQ(events.back().at("kind"), "end");
  EXPECT_EQ(events.back().at("exitCode"), 3);
  EXPECT_EQ(events.back().at("counts").at("exported"), 2);
  const std::vector<Json> lost = EventsOf(end.output, "lost");
  ASSERT_EQ(lost.size(), 1u);
  EXPECT_EQ(lost[0].at("id"), "00000906");
  EXPECT_EQ(lost[0].at("stage"), "open");
}

TEST_F(ExportBasicsTest, WithoutATerminalLinesArePlain) {
  AddNotes(1);
  const ConsoleEnd end = Export();
  EXPECT_FALSE(Holds(end.output, "\x1B"));
  for (std::size_t at = end.output.find('\r'); at != std::string::npos;
       at = end.output.find('\r', at + 1)) {
    EXPECT_EQ(end.output[at + 1], '\n');
  }
}

TEST_F(ExportBasicsTest, ACrashCostsItsNoteAndIsToldAsARestart) {
  AddNotes(3, R"({"entry": "DXLExportNote", "note": "00000906", "action": "accessViolation"})");
  const ConsoleEnd end = Export({L"--json"});
  EXPECT_EQ(end.code, 3u);
  const std::vector<Json> restarts = EventsOf(end.output, "restart");
  ASSERT_EQ(restarts.size(), 1u);
  EXPECT_EQ(restarts[0].at("note"), "00000906");
  EXPECT_EQ(restarts[0].at("cause"), "crash");
  EXPECT_EQ(Outcome().at("restarts").size(), 1u);
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("stage"), "crash");
}

TEST_F(ExportBasicsTest, ACrashBeforeTheNotesCouldNotRunAndNamesThePhase) {
  const std::pair<const char*, const char*> rows[] = {
      {"NotesInitExtended", "starting the Notes runtime"},
      {"NSFDbOpen", "opening the database"},
      {"DXLExportACL", "exporting the database's properties"},
      {"NSFSearchExtended3", "listing the notes"},
  };
  AddNotes(1);
  run_.SetFaults("[]");
  int number = 0;
  for (const auto& [entry, deed] : rows) {
    run_.ChangeFaults("[{\"entry\": \"" + std::string(entry) +
                      "\", \"action\": \"accessViolation\"}]");
    out_ = run_.folder() + L"\\out " + std::to_wstring(++number);
    const ConsoleEnd end = Export({L"--no-views"});
    EXPECT_EQ(end.code, 2u) << entry << end.output;
    EXPECT_TRUE(Holds(end.output, deed)) << entry << end.output;
  }
}

TEST_F(ExportBasicsTest, ACrashInTheEndOfTheRuntimeIsAWarning) {
  AddNotes(2);
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "accessViolation"}])");
  const ConsoleEnd end = Export({L"--json"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_FALSE(Outcome().at("account").at("warnings").empty());
}

TEST_F(ExportBasicsTest, ABreakOffAmongTheNotesIsIncomplete) {
  database_ = L"designfail-6967.nsf";
  const ConsoleEnd end = Export();
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(Outcome().at("reason"), "not accounted for")) << end.output;
}

TEST_F(ExportBasicsTest, NothingIsLeftOpenInTheLibrary) {
  AddNotes(3);
  Export();
  EXPECT_EQ(run_.LedgerFault(1), "");
}

}  // namespace
}  // namespace larkspan::console
