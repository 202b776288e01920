#include "app/Supervisor.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/ScriptedLauncher.h"

namespace larkspan {
namespace {

constexpr WorkerEnding kCleanExit{WorkerEnding::Kind::kExited, 0};
constexpr WorkerEnding kAccessViolation{WorkerEnding::Kind::kExited, 0xC0000005};

const ScriptedWorker kCompletes{kCleanExit, std::nullopt};

ScriptedWorker CrashesAt(const std::string& marker) { return {kAccessViolation, marker + "\r\n"}; }

using CommandLines = std::vector<std::wstring>;

class SupervisorTest : public OutputFolderTest {
 protected:
  // Returns the command lines of the workers that ran.
  CommandLines Run(std::vector<ScriptedWorker> script, const std::wstring& commandLine = L"run") {
    ScriptedLauncher launcher(std::move(script));
    RunSupervisor(launcher, commandLine);
    return launcher.commandLines();
  }

  const std::vector<long long>& pauses() const { return recorder_.pauses(); }

  // The lines of the run log above DEBUG.
  Lines Complaints() const {
    Lines complaints = LogLines();
    std::erase_if(complaints, [](const auto& line) { return line.starts_with("#DEBUG#"); });
    return complaints;
  }

 private:
  PauseRecorder recorder_;
};

const std::string kMajor = "#WARNING# - Major: Incomplete run detected for note id ";
const std::string kGaveUp = "#ERROR# - Maximum retries exceeded";

// In these scripts no document is ever listed, so lost notes give one more line at the end.
std::string Mismatch(int found) {
  return "#WARNING# - Document count mismatch: expected 0 but only found " + std::to_string(found);
}

TEST_F(SupervisorTest, FirstWorkerStartsAtZero) {
  EXPECT_EQ(Run({kCompletes}), CommandLines{L"run -l 00000000"});
}

TEST_F(SupervisorTest, WorkerWithoutMarkerEndsTheRun) {
  EXPECT_EQ(Run({kCompletes, kCompletes}).size(), 1u);
}

TEST_F(SupervisorTest, WorkerThatFailsWithoutMarkerEndsTheRun) {
  EXPECT_EQ(Run({{kAccessViolation, std::nullopt}}).size(), 1u);
}

TEST_F(SupervisorTest, WorkerWithMarkerThatSaysCompleteEndsTheRun) {
  EXPECT_EQ(Run({{kCleanExit, "FFFFFFFF\r\n"}}).size(), 1u);
}

TEST_F(SupervisorTest, WorkerWithEmptyMarkerEndsTheRun) {
  EXPECT_EQ(Run({{kAccessViolation, ""}}).size(), 1u);
}

TEST_F(SupervisorTest, WorkerWithMarkerThatIsNoNumberEndsTheRun) {
  EXPECT_EQ(Run({{kAccessViolation, "note"}}).size(), 1u);
}

TEST_F(SupervisorTest, CompleteRunDoesNotPause) {
  Run({kCompletes});
  EXPECT_TRUE(pauses().empty());
}

TEST_F(SupervisorTest, CommandLineIsRepeatedAsItWasGiven) {
  const std::wstring given =
      L"\"C:\\p f\\larkspan.exe\"  =n.ini -P \"\u00E9 \u65E5.nsf\" -o x\\ -pipe 44 -archive %s %d";
  EXPECT_EQ(Run({kCompletes}, given), CommandLines{given + L" -l 00000000"});
}

TEST_F(SupervisorTest, CommandLineOfGreatLengthIsRepeatedInFull) {
  const std::wstring given(30000, L'x');
  EXPECT_EQ(Run({kCompletes}, given), CommandLines{given + L" -l 00000000"});
}

TEST_F(SupervisorTest, EveryWorkerGetsOneResumeNoteIdOnly) {
  EXPECT_EQ(Run({CrashesAt("00000100"), CrashesAt("abc"), kCompletes}),
            (CommandLines{L"run -l 00000000", L"run -l 00000100", L"run -l 00000ABC"}));
}

TEST_F(SupervisorTest, WorkerAfterACrashStartsAtOnce) {
  Run({CrashesAt("00000100"), CrashesAt("00000104"), kCompletes});
  EXPECT_TRUE(pauses().empty());
}

TEST_F(SupervisorTest, CrashGivesOneMajorLine) {
  Run({CrashesAt("00000100"), kCompletes});
  EXPECT_EQ(Complaints(), (Lines{kMajor + "00000100", Mismatch(1)}));
}

TEST_F(SupervisorTest, MarkerNeedNotRise) {
  EXPECT_EQ(Run({CrashesAt("00000100"), CrashesAt("00000040"), kCompletes}),
            (CommandLines{L"run -l 00000000", L"run -l 00000100", L"run -l 00000040"}));
}

TEST_F(SupervisorTest, MarkerBackAtZeroStartsAtTheBeginningWithoutMajorLine) {
  Run({CrashesAt("00000100"), CrashesAt("0"), kCompletes});
  EXPECT_EQ(Complaints(), (Lines{kMajor + "00000100", Mismatch(1)}));
}

TEST_F(SupervisorTest, MarkerIsDeletedBetweenWorkers) {
  EXPECT_EQ(Run({CrashesAt("00000100"), kCompletes, CrashesAt("00000200")}).size(), 2u);
}

TEST_F(SupervisorTest, NoMarkerIsLeft) {
  Run({{kCleanExit, "FFFFFFFF\r\n"}});
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
}

TEST_F(SupervisorTest, NoMarkerIsLeftAfterGivingUp) {
  Run(std::vector<ScriptedWorker>(3, CrashesAt("0")));
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
}

TEST_F(SupervisorTest, StartThatFailsIsTriedThreeTimes) {
  EXPECT_EQ(Run(std::vector<ScriptedWorker>(5, CrashesAt("0"))),
            CommandLines(3, L"run -l 00000000"));
}

TEST_F(SupervisorTest, StartThatFailsIsTriedFiveSecondsApart) {
  Run(std::vector<ScriptedWorker>(5, CrashesAt("0")));
  EXPECT_EQ(pauses(), std::vector<long long>(2, 5000));
}

TEST_F(SupervisorTest, StartThatFailsAtZeroGivesOneErrorLine) {
  Run(std::vector<ScriptedWorker>(5, CrashesAt("0")));
  EXPECT_EQ(Complaints(), Lines{kGaveUp});
}

TEST_F(SupervisorTest, StartThatFailsAtANoteGivesThreeMajorLines) {
  Run(std::vector<ScriptedWorker>(5, CrashesAt("000012F6")));
  const std::string major = kMajor + "000012F6";
  EXPECT_EQ(Complaints(), (Lines{major, major, major, kGaveUp, Mismatch(3)}));
}

TEST_F(SupervisorTest, StartThatFailsAtANoteIsTriedThreeTimesThere) {
  EXPECT_EQ(Run(std::vector<ScriptedWorker>(5, CrashesAt("000012F6"))),
            (CommandLines{L"run -l 00000000", L"run -l 000012F6", L"run -l 000012F6",
                          L"run -l 000012F6"}));
}

TEST_F(SupervisorTest, ProgressResetsTheRetries) {
  EXPECT_EQ(Run({CrashesAt("0"), CrashesAt("0"), CrashesAt("100"), CrashesAt("100"),
                 CrashesAt("100"), kCompletes})
                .size(),
            6u);
}

TEST_F(SupervisorTest, OnlyRepeatedNoteIdsArePausedFor) {
  Run({CrashesAt("0"), CrashesAt("0"), CrashesAt("100"), CrashesAt("100"), kCompletes});
  EXPECT_EQ(pauses(), std::vector<long long>(3, 5000));
}

TEST_F(SupervisorTest, CleanExitWithItsOwnNoteIdCountsAsARetry) {
  EXPECT_EQ(Run(std::vector<ScriptedWorker>(5, {kCleanExit, "0"})).size(), 3u);
}

TEST_F(SupervisorTest, WorkerThatCannotBeCreatedEndsTheRun) {
  EXPECT_EQ(Run({{{WorkerEnding::Kind::kNotCreated, 2}, std::nullopt}}).size(), 1u);
}

TEST_F(SupervisorTest, WorkerThatCannotBeCreatedIsAnErrorLine) {
  Run({{{WorkerEnding::Kind::kNotCreated, 2}, std::nullopt}});
  EXPECT_EQ(Complaints(), Lines{"#ERROR# - CreateProcess failed (2)"});
}

Lines LogOfOneWorkerWith(const Lines& ending) {
  Lines lines = {"#DEBUG# - Top of Archive Main Loop with nid 00000000",
                 "#DEBUG# - Invoking child process"};
  lines.insert(lines.end(), ending.begin(), ending.end());
  const Lines rest = {"#DEBUG# - Child process complete", "#DEBUG# - Checking for marker file",
                      "#DEBUG# - No marker file found", "#DEBUG# - End of Archive Main Loop",
                      "#DEBUG# - CountInputDocuments fopen failed"};
  lines.insert(lines.end(), rest.begin(), rest.end());
  return lines;
}

TEST_F(SupervisorTest, CleanWorkerIsTraced) {
  Run({kCompletes});
  EXPECT_EQ(LogLines(), LogOfOneWorkerWith({"#DEBUG# - Child process exited cleanly"}));
}

TEST_F(SupervisorTest, NonZeroExitCodeIsTracedAsUnsignedNumber) {
  Run({{kAccessViolation, std::nullopt}});
  EXPECT_EQ(LogLines(),
            LogOfOneWorkerWith({"#DEBUG# - Child process returned non-zero value (3221225477)"}));
}

TEST_F(SupervisorTest, UnknownExitCodeIsNotTraced) {
  Run({{{WorkerEnding::Kind::kExitCodeUnknown, 0}, std::nullopt}});
  EXPECT_EQ(LogLines(), LogOfOneWorkerWith({}));
}

TEST_F(SupervisorTest, WorkerThatCannotBeCreatedIsTracedAsEnded) {
  Run({{{WorkerEnding::Kind::kNotCreated, 5}, std::nullopt}});
  EXPECT_EQ(LogLines(), LogOfOneWorkerWith({"#ERROR# - CreateProcess failed (5)"}));
}

TEST_F(SupervisorTest, SecondWorkerIsTracedWithItsNoteId) {
  Run({CrashesAt("00000100"), kCompletes});
  const Lines lines = LogLines();
  ASSERT_GE(lines.size(), 9u);
  EXPECT_EQ(Lines(lines.begin() + 5, lines.begin() + 9),
            (Lines{"#DEBUG# - ReadMarkerFile returned 00000100",
                   "#DEBUG# - Top of Archive Main Loop with nid 00000100", kMajor + "00000100",
                   "#DEBUG# - Invoking child process"}));
}

TEST_F(SupervisorTest, GivingUpIsTracedBeforeTheEndOfTheLoop) {
  Run(std::vector<ScriptedWorker>(3, CrashesAt("0")));
  const Lines lines = LogLines();
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(Lines(lines.end() - 3, lines.end()),
            (Lines{kGaveUp, "#DEBUG# - End of Archive Main Loop",
                   "#DEBUG# - CountInputDocuments fopen failed"}));
}

TEST_F(SupervisorTest, DebugLinesAreAbsentWithoutDebug) {
  LeaveOutDebugLines();
  Run({CrashesAt("00000100"), kCompletes});
  EXPECT_EQ(LogLines(), (Lines{kMajor + "00000100", Mismatch(1)}));
}

// The first words of each audit line, which are what is the same in every run.
Lines AuditLabels(const Lines& lines) {
  Lines labels;
  for (const std::string& line : lines) labels.push_back(line.substr(0, line.find(": ")));
  return labels;
}

const Lines kLabelsOfARun = {"Archive started at",
                             "Archive ended at",
                             "Total runtime (seconds)",
                             "Database total documents ",
                             "Exported Document Counts",
                             "Data   ",
                             "Design ",
                             "Profile",
                             "Exported total documents ",
                             "Failed total documents   ",
                             "Total documents processed",
                             "Documents exported with warnings "};

TEST_F(SupervisorTest, AuditReportBeginsWithTheStartAndEndsWithTheClosingBlock) {
  Run({kCompletes});
  EXPECT_EQ(AuditLabels(ReadLines(PathOf(L"audit.txt"))), kLabelsOfARun);
}

TEST_F(SupervisorTest, AuditReportHasItsClosingBlockAfterGivingUp) {
  Run(std::vector<ScriptedWorker>(3, CrashesAt("0")));
  EXPECT_EQ(AuditLabels(ReadLines(PathOf(L"audit.txt"))), kLabelsOfARun);
}

TEST_F(SupervisorTest, EveryLostAttemptCountsAsAFailedDocument) {
  Run(std::vector<ScriptedWorker>(4, CrashesAt("000012F6")));
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).at(9), "Failed total documents   :        3");
}

TEST_F(SupervisorTest, StartIsAuditedBeforeTheFirstWorker) {
  class AuditReader : public WorkerLauncher {
   public:
    explicit AuditReader(std::wstring audit) : audit_(std::move(audit)) {}
    WorkerEnding RunToEnd(const std::wstring&) override {
      lines = ReadLines(audit_);
      return kCleanExit;
    }
    Lines lines;

   private:
    std::wstring audit_;
  };
  AuditReader launcher(PathOf(L"audit.txt"));
  RunSupervisor(launcher, L"run");
  EXPECT_EQ(AuditLabels(launcher.lines), Lines{"Archive started at"});
}

}  // namespace
}  // namespace larkspan
