// --workers: runs that are stopped, cut off and taken up again, end early or leave out views.
#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "console/text/Utf.h"
#include "tests/console/system/ExportWorkersTest.h"
#include "tests/support/SystemProcess.h"

namespace larkspan::console {
namespace {

using testing::DescribeDifferences;
using testing::DocumentsJson;
using testing::FaultsMember;
using testing::OutputTree;

const Words kThree = {L"--workers", L"3"};

class ExportWorkersStopTest : public ExportWorkersTest {
 protected:
  // The same notes, from now on without a fault that the database itself makes.
  void AddNotesWithoutFaults(int count) {
    run_.AddDatabase(database_, DocumentsJson(count));
    run_.SetFaults("[]");
  }

  void UseSample() {
    database_ = L"sample.nsf";
    run_.SetFaults("[]");
  }

  // Three workers, and standard input that ends when the file is there.
  ConsoleEnd StopAt(const std::wstring& awaited, Words words = kThree) {
    words.insert(words.end(), {L"--stop-on-stdin-end", L"--json"});
    const auto process = StartExport(words);
    AwaitFile(out_ + awaited);
    process->EndInput();
    ConsoleEnd end = process->WaitForEnd();
    process->AwaitNothingLeft();
    return end;
  }

  // Without those at which a worker was cut off: a design note is tried again where its raw copy is
  // missing.
  std::vector<std::wstring> UnmarkedNotesInParts() const {
    std::wstring marked;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(out_ + L"\\parts"))
      if (entry.path().filename() == L"marker.txt")
        marked += Utf8ToWide(ReadBytes(entry.path().native()));
    std::vector<std::wstring> notes = NotesInParts();
    std::erase_if(notes,
                  [&](const std::wstring& note) { return marked.find(note) != marked.npos; });
    return notes;
  }

  // Others can read it, and neither delete nor rename it.
  static testing::UniqueSystemHandle Hold(const std::wstring& file) {
    testing::UniqueSystemHandle held(CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                 nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_NE(held.get(), INVALID_HANDLE_VALUE);
    return held;
  }

  // Ends the input of an export whose joining waits for a file that the test holds.
  ConsoleEnd StopWhileHeld(ConsoleProcess& process, testing::UniqueSystemHandle held) const {
    process.AwaitOutput(R"("phase":"joining")");
    AwaitFile(out_ + L"\\joined");
    process.EndInput();
    process.AwaitOutput(R"("kind":"stop")");
    held.reset();
    ConsoleEnd end = process.WaitForEnd();
    process.AwaitNothingLeft();
    return end;
  }

  // The last event and outcome.json say so.
  static void ExpectEnd(const ConsoleEnd& end, const std::wstring& folder, int code) {
    EXPECT_EQ(static_cast<int>(end.code), code) << end.output;
    const Json last = EventsIn(end.output).back();
    EXPECT_EQ(last.at("kind"), "end");
    EXPECT_EQ(last.at("exitCode"), code);
    const Json outcome = OutcomeOf(folder);
    EXPECT_EQ(outcome.at("state"), "ended");
    EXPECT_EQ(outcome.at("exitCode"), code);
    EXPECT_EQ(outcome.at("reason"), last.at("reason"));
    EXPECT_EQ(outcome.at("progress").at("phase"), "ended");
  }

  void ExpectStoppedByInput(const ConsoleEnd& end) const {
    ExpectEnd(end, out_, 4);
    EXPECT_EQ(Outcome().at("reason"), "stopped: standard input has come to its end");
    EXPECT_EQ(Outcome().at("stop").at("by"), "input");
    const std::vector<Json> stops = EventsOf(end.output, "stop");
    ASSERT_EQ(stops.size(), 1u);
    EXPECT_EQ(stops[0].at("by"), "input");
  }

  void ExpectTakenUp(const OutputTree& whole, Words words = kThree) {
    words.insert(words.end(), {L"--resume", L"--json"});
    ExpectEnd(Export(words), out_, 0);
    EXPECT_FALSE(HasParts());
    EXPECT_EQ(DescribeDifferences(whole, NotesTree()), "");
  }

  static OutputTree TreeOf(const std::wstring& database) {
    testing::ExportRun clean;
    clean.Export(database, {L"-archive"});
    return NotesTreeOf(clean.output());
  }

  // One worker first, then three, into folders of their own; the outcomes are alike.
  void ExpectAlikeWith(const Words& words, int code) {
    Words shared = {L"--workers", L"3", L"--json"};
    shared.insert(shared.end(), words.begin(), words.end());
    const ConsoleEnd end = Export(shared);
    ExpectEnd(end, out_, code);
    ExpectLikeAlone(end, words);
    EXPECT_EQ(Outcome().at("reason"), OutcomeOf(Alone()).at("reason"));
    EXPECT_EQ(Outcome().at("restarts").size(), OutcomeOf(Alone()).at("restarts").size());
    EXPECT_EQ(Outcome().at("lostViews"), OutcomeOf(Alone()).at("lostViews"));
  }
};

TEST_F(ExportWorkersStopTest, AStopWhileTheNotesAreListedLeavesARunToBeTakenUp) {
  AddNotesWithoutFaults(60);
  run_.ChangeFaults(R"([{"entry": "NSFSearchExtended3", "wait": 6000}])");
  ExpectStoppedByInput(StopAt(L"\\db.dxl"));
  EXPECT_FALSE(HasParts());
  EXPECT_EQ(FilesIn("data"), Lines());
  run_.ChangeFaults("[]");
  ExpectTakenUp(CleanTree(DocumentsJson(60)));
}

TEST_F(ExportWorkersStopTest, AStopAmongTheViewsLeavesARunToBeTakenUp) {
  UseSample();
  run_.ChangeFaults(R"([{"entry": "NIFOpenCollection", "note": "00000136", "wait": 6000}])");
  const ConsoleEnd end = StopAt(L"\\views\\00000132.xml");
  ExpectStoppedByInput(end);
  EXPECT_FALSE(HasParts());
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_EQ(EventsOf(end.output, "retry").size(), 0u);
  run_.ChangeFaults("[]");
  ExpectTakenUp(TreeOf(L"sample.nsf"));
}

// A program that holds a note's file keeps the run at its last step.
TEST_F(ExportWorkersStopTest, AStopWhileThePartsAreJoinedLeavesThemToBeTakenUp) {
  AddNotesInKnownSlices(60, {WaitNearTheEnd()});
  const auto process = StartExport({L"--workers", L"3", L"--stop-on-stdin-end", L"--json"});
  const std::wstring note = out_ + L"\\parts\\00000902\\data\\00000902.dxl";
  AwaitFile(note);
  const ConsoleEnd end = StopWhileHeld(*process, Hold(note));
  ExpectStoppedByInput(end);
  EXPECT_EQ(ErrorsIn(end.output), std::vector<std::string>());
  EXPECT_TRUE(Exists(out_ + L"\\joined"));

  // The last slice is joined last.
  testing::UniqueSystemHandle last = Hold(out_ + L"\\joined\\000009DA\\data\\000009DA.dxl");
  const auto second = StartExport({L"--resume", L"--stop-on-stdin-end", L"--json"});
  const ConsoleEnd secondEnd = StopWhileHeld(*second, std::move(last));
  EXPECT_EQ(secondEnd.code, 4u) << secondEnd.output;
  EXPECT_EQ(EventsOf(secondEnd.output, "stop").size(), 1u);
  EXPECT_EQ(EventsIn(secondEnd.output).back().at("reason"),
            "stopped: standard input has come to its end");
  EXPECT_TRUE(Exists(out_ + L"\\joined"));

  const ConsoleEnd again = Export({L"--resume", L"--json"});
  ExpectEnd(again, out_, 0);
  EXPECT_EQ(EventsOf(again.output, "phase")[0].at("phase"), "joining");
  EXPECT_FALSE(HasParts());
  EXPECT_EQ(DescribeDifferences(CleanTree(DocumentsJson(60)), NotesTree()), "");
}

TEST_F(ExportWorkersStopTest, AnAttemptThatIsCutOffGetsItsNameWhenItIsWhole) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(3, kHang) + ", " + FaultAt(24, kHang) + "]");
  const std::wstring attempt = out_ + L".attempt-1";
  {
    const auto process = StartExport({L"--workers", L"3", L"--atomic"});
    AwaitFile(attempt + L"\\parts\\0000092A\\data\\0000092A.dxl");
    process->EndByForce();
    process->AwaitNothingLeft();
  }
  EXPECT_FALSE(Exists(out_));
  EXPECT_EQ(OutcomeOf(attempt).at("state"), "running");
  run_.ChangeFaults("[" + FaultAt(29, R"("wait": 6000)") +
                    R"(, {"entry": "NSFNoteOpen", "wait": 150}])");
  const auto process = StartExport({L"--workers", L"2", L"--atomic", L"--resume", L"--json"});
  AwaitFile(attempt + L"\\parts\\00000952\\data\\00000972.dxl");
  EXPECT_FALSE(Exists(out_));
  const ConsoleEnd end = process->WaitForEnd();
  ExpectEnd(end, out_, 0);
  EXPECT_FALSE(Exists(attempt));
  EXPECT_FALSE(HasParts());
  EXPECT_EQ(DescribeDifferences(CleanTree(DocumentsJson(60)), NotesTree()), "");
}

TEST_F(ExportWorkersStopTest, ACutOffAttemptThatIsStoppedOnceMoreGetsNoName) {
  AddNotesInKnownSlices(60);
  run_.SetFaults("[]");
  run_.ChangeFaults("[" + FaultAt(3, kHang) + "]");
  const std::wstring attempt = out_ + L".attempt-1";
  {
    const auto process = StartExport({L"--workers", L"3", L"--atomic"});
    AwaitFile(attempt + L"\\parts\\0000092A\\data\\0000092A.dxl");
    process->EndByForce();
    process->AwaitNothingLeft();
  }
  run_.ChangeFaults("[" + FaultAt(5, R"("wait": 6000)") +
                    R"(, {"entry": "NSFNoteOpen", "wait": 100}])");
  const auto process = StartExport(
      {L"--workers", L"3", L"--atomic", L"--resume", L"--json", L"--stop-on-stdin-end"});
  AwaitFile(attempt + L"\\parts\\00000902\\data\\0000090E.dxl");
  process->EndInput();
  ExpectEnd(process->WaitForEnd(), attempt, 4);
  EXPECT_FALSE(Exists(out_));
  run_.ChangeFaults("[]");
  ExpectTakenUp(CleanTree(DocumentsJson(60)), {L"--atomic"});
}

TEST_F(ExportWorkersStopTest, WithDebugLinesEverythingElseIsThatOfOneWorker) {
  AddNotes(60, {FaultAt(7, kCrash), FaultAt(41, R"("status": 546)")});
  const ConsoleEnd end = Export({L"--workers", L"3", L"--debug"});
  EXPECT_EQ(end.code, ExportAlone({L"--debug"}));
  std::vector<OutputTree> trees;
  for (const std::wstring& folder : {Alone(), out_}) {
    OutputTree tree = WholeTree(folder);
    Lines lines = SplitLines(tree.at("log.txt"));
    const auto isDebug = [](const std::string& line) { return line.starts_with("#DEBUG#"); };
    EXPECT_GT(std::erase_if(lines, isDebug), 0u);
    tree["log.txt"].clear();
    for (const std::string& line : lines) tree["log.txt"] += line + "\n";
    trees.push_back(std::move(tree));
  }
  EXPECT_EQ(DescribeDifferences(trees[0], trees[1]), "");
  EXPECT_EQ(AccountOf(Alone()), AccountOf(out_));
}

TEST_F(ExportWorkersStopTest, ACrashInAViewIsTakenUpWithoutViewsAsByOneWorker) {
  UseSample();
  run_.ChangeFaults(
      R"([{"entry": "NIFOpenCollection", "note": "00000136", "action": "accessViolation"}])");
  ExpectAlikeWith({}, 3);
  EXPECT_EQ(Outcome().at("lostViews").size(), 12u);
  EXPECT_FALSE(Exists(out_ + L"\\acl.dxl.first"));
}

TEST_F(ExportWorkersStopTest, AHangInAViewIsTakenUpWithoutViewsAsByOneWorker) {
  UseSample();
  run_.ChangeFaults(R"([{"entry": "NIFOpenCollection", "note": "00000136", "action": "hang"}])");
  ExpectAlikeWith({L"--stall", kShortStall}, 3);
  EXPECT_EQ(Outcome().at("lostViews").at(0).at("stage"), "stall");
}

TEST_F(ExportWorkersStopTest, ACrashInTheDesignOfAViewCostsThatDesignAlone) {
  UseSample();
  run_.ChangeFaults(
      R"([{"entry": "DXLExportNote", "note": "00000136", "action": "accessViolation"}])");
  ExpectAlikeWith({}, 3);
  EXPECT_EQ(Outcome().at("account").at("losses").at(0).at("id"), "00000136");
}

// The run that goes on without views cannot read the access control list: that of the first stays.
TEST_F(ExportWorkersStopTest, TheFirstAccessControlListStaysWhereTheSecondRunMakesNone) {
  UseSample();
  const std::wstring shared = out_;
  for (const Words& more : {Words{}, kThree}) {
    out_ = more.empty() ? Alone() : shared;
    run_.ChangeFaults(R"([{"entry": "NIFOpenCollection", "note": "00000136", "wait": 6000,
                           "action": "accessViolation"}])");
    const auto process = StartExport(more);
    AwaitFile(out_ + L"\\views\\00000132.xml");
    run_.ChangeFaults(R"([{"entry": "DXLExportACL", "status": 546}])");
    EXPECT_EQ(process->WaitForEnd().code, 3u);
    EXPECT_TRUE(Exists(out_ + L"\\acl.dxl"));
    EXPECT_FALSE(Exists(out_ + L"\\acl.dxl.first"));
  }
  EXPECT_EQ(DescribeDifferences(WholeTree(Alone()), WholeTree(out_)), "");
  EXPECT_EQ(AccountOf(Alone()), AccountOf(out_));
}

TEST_F(ExportWorkersStopTest, ARunWithoutItsViewsThatIsCutOffIsTakenUp) {
  UseSample();
  run_.ChangeFaults(R"([{"entry": "NIFOpenCollection", "note": "00000136",
                         "action": "accessViolation"},
                        {"entry": "NSFSearchExtended3", "wait": 3000},
                        {"entry": "DXLExportNote", "note": "00000972", "action": "hang"},
                        {"entry": "NSFNoteOpen", "wait": 100}])");
  const auto process = StartExport(kThree);
  EXPECT_TRUE(AwaitCondition([this] { return HasParts() && NotesInParts().size() > 6; }));
  process->EndByForce();
  process->AwaitNothingLeft();
  EXPECT_TRUE(Exists(out_ + L"\\acl.dxl.first"));
  ASSERT_FALSE(UnmarkedNotesInParts().empty());
  FailAt(UnmarkedNotesInParts());
  const ConsoleEnd end = Export({L"--resume", L"--workers", L"2", L"--json"});
  ExpectEnd(end, out_, 3);
  EXPECT_EQ(Outcome().at("account").at("losses").size(), 12u);
  EXPECT_FALSE(Exists(out_ + L"\\acl.dxl.first"));
  OutputTree whole = TreeOf(L"sample.nsf");
  OutputTree tree = NotesTree();
  for (OutputTree* one : {&whole, &tree})
    std::erase_if(*one, [](const auto& entry) { return entry.first.starts_with("views/"); });
  EXPECT_EQ(DescribeDifferences(whole, tree), "");
}

TEST_F(ExportWorkersStopTest, AHangWhereNoNoteIsAtWorkEndsTheRunAsByOneWorker) {
  AddNotesWithoutFaults(60);
  const std::wstring first = out_;
  for (const std::string entry :
       {"NotesInitExtended", "NSFDbOpen", "DXLExportACL", "NSFSearchExtended3"}) {
    run_.ChangeFaults("[{\"entry\": \"" + entry + "\", \"action\": \"hang\"}]");
    out_ = first + std::wstring(entry.begin(), entry.end());
    ExpectEnd(Export({L"--no-views", L"--stall", kShortStall, L"--json", L"--workers", L"3"}), out_,
              2);
    const Json shared = Outcome();
    std::filesystem::remove_all(Alone());
    EXPECT_EQ(ExportAlone({L"--no-views", L"--stall", kShortStall}), 2u);
    EXPECT_EQ(shared.at("reason"), OutcomeOf(Alone()).at("reason")) << entry;
    EXPECT_EQ(shared.at("stop").at("by"), "stall");
  }
}

TEST_F(ExportWorkersStopTest, SeveralHangsAtOnceAreThoseOfOneWorker) {
  AddNotes(60, {FaultAt(3, kHang), FaultAt(22, kHang), FaultAt(23, kHang)});
  ExpectAlikeWith({L"--stall", kShortStall}, 3);
  for (const Json& loss : Outcome().at("account").at("losses"))
    EXPECT_EQ(loss.at("stage"), "stall");
}

// Those of a part that is not joined yet are told by events and by the account.
TEST_F(ExportWorkersStopTest, TooManyLossesInARowGiveUpWithTheLossesOfOneWorker) {
  std::vector<std::string> faults = {R"({"entry": "NSFNoteOpen", "wait": 50})"};
  for (int note = 24; note < 32; ++note) faults.push_back(FaultAt(note, R"("status": 546)"));
  AddNotes(120, faults);
  const ConsoleEnd end = Export({L"--workers", L"3", L"--give-up", L"8", L"--json"});
  ExpectEnd(end, out_, 5);
  EXPECT_EQ(EventsOf(end.output, "lost").size(), 8u);
  EXPECT_EQ(ExportAlone({L"--give-up", L"8"}), 5u);
  const Json alone = OutcomeOf(Alone());
  const Json losses = alone.at("account").at("losses");
  EXPECT_EQ(Outcome().at("reason"), alone.at("reason"));
  EXPECT_EQ(Outcome().at("stop").at("by"), alone.at("stop").at("by"));
  EXPECT_EQ(Outcome().at("account").at("losses"), losses);
  ExpectEnd(Export({L"--workers", L"2", L"--resume", L"--json"}), out_, 3);
  EXPECT_EQ(Outcome().at("account").at("losses"), losses);
  EXPECT_FALSE(HasParts());
}

TEST_F(ExportWorkersStopTest, OneLossLessDoesNotGiveUp) {
  std::vector<std::string> faults;
  for (int note = 24; note < 31; ++note) faults.push_back(FaultAt(note, R"("status": 546)"));
  for (int note = 32; note < 39; ++note) faults.push_back(FaultAt(note, R"("status": 546)"));
  AddNotes(60, faults);
  ExpectAlikeWith({L"--give-up", L"8"}, 3);
  EXPECT_EQ(Outcome().at("account").at("notes").at("lost"), 14);
}

TEST_F(ExportWorkersStopTest, LossesOfAllWorkersCountForTheLimit) {
  AddNotes(60, {FaultAt(2, R"("status": 546)"), FaultAt(22, R"("status": 546)"),
                FaultAt(50, R"("status": 546)")});
  ExpectAlikeWith({L"--max-losses", L"3"}, 3);
  std::filesystem::remove_all(out_);
  std::filesystem::remove_all(Alone());
  ExpectAlikeWith({L"--max-losses", L"2"}, 5);
  EXPECT_EQ(Outcome().at("reason"), "more is lost than --max-losses allows");
}

// The notes wait such that workers are at work behind the failing one and before it when it fails.
class DesignEndTest : public ExportWorkersStopTest, public ::testing::WithParamInterface<int> {};

TEST_P(DesignEndTest, ADesignThatFailsLeavesWhatOneWorkerLeavesAndKeepsWhatLiesBehind) {
  const std::string status = R"("status": )" + std::to_string(GetParam());
  const std::string wait = R"("wait": 10000)";
  AddNotesWithoutFaults(60);
  run_.ChangeFaults("[" + FaultAt(5, wait) + ", " + FaultAt(12, R"("wait": 5000, )" + status) +
                    ", " + FaultAt(22, wait) +
                    R"(, {"entry": "NSFSearchExtended3", "wait": 3000}])");
  const ConsoleEnd end = Export({L"--workers", L"3", L"--json"});
  ExpectEnd(end, out_, 5);
  run_.ChangeFaults("[" + FaultAt(12, status) + "]");
  EXPECT_EQ(ExportAlone(), 5u);
  EXPECT_EQ(DescribeDifferences(NotesTreeOf(Alone()), NotesUpTo(12)), "");
  EXPECT_EQ(Log(), ReadBytes(Alone() + L"\\log.txt"));
  EXPECT_EQ(Outcome().at("account").at("losses"), OutcomeOf(Alone()).at("account").at("losses"));
  // Those behind the note were at work, and stopped before they came to the end of their slices.
  EXPECT_EQ(NotesInParts().size(), 3u);
  EXPECT_FALSE(Exists(out_ + L"\\parts\\0000097A"));
  run_.ChangeFaults("[]");
  EXPECT_EQ(ExportAlone({L"--resume"}), 0u);
  FailAt(NotesInParts());
  ExpectTakenUp(NotesTreeOf(Alone()), {L"--workers", L"2"});
}

INSTANTIATE_TEST_SUITE_P(Statuses, DesignEndTest, ::testing::Values(6967, 6968));

}  // namespace
}  // namespace larkspan::console
