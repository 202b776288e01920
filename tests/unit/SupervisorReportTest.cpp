// The traces of the supervisor in the run log and in the audit report.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

#include "base/LocalTime.h"
#include "base/Utf8.h"
#include "tests/support/FileBytes.h"
#include "tests/support/SupervisorTest.h"

namespace larkspan {
namespace {

using SupervisorReportTest = SupervisorTest;

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

TEST_F(SupervisorReportTest, CleanWorkerIsTraced) {
  Run({kCompletes});
  EXPECT_EQ(LogLines(), LogOfOneWorkerWith({"#DEBUG# - Child process exited cleanly"}));
}

TEST_F(SupervisorReportTest, NonZeroExitCodeIsTracedAsUnsignedNumber) {
  Run({{kAccessViolation, "FFFFFFFF\r\n"}});
  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 9u);
  EXPECT_EQ(Lines(lines.begin() + 2, lines.begin() + 7),
            (Lines{"#DEBUG# - Child process returned non-zero value (3221225477)",
                   "#DEBUG# - Child process complete", "#DEBUG# - Checking for marker file",
                   "#DEBUG# - ReadMarkerFile returned FFFFFFFF", kEndedOutsideANote}));
}

TEST_F(SupervisorReportTest, UnknownExitCodeIsNotTraced) {
  Run({{{WorkerEnding::Kind::kExitCodeUnknown, 0, true}, std::nullopt}});
  EXPECT_EQ(LogLines(), LogOfOneWorkerWith({}));
}

TEST_F(SupervisorReportTest, WorkerThatCannotBeCreatedIsTracedAsEnded) {
  Run({{{WorkerEnding::Kind::kNotCreated, 5}, std::nullopt}});
  EXPECT_EQ(LogLines(), LogOfOneWorkerWith({"#ERROR# - CreateProcess failed (5)"}));
}

TEST_F(SupervisorReportTest, SecondWorkerIsTracedWithItsNoteId) {
  Run({CrashesAt("00000100"), kCompletes});
  const Lines lines = LogLines();
  ASSERT_GE(lines.size(), 9u);
  EXPECT_EQ(Lines(lines.begin() + 5, lines.begin() + 9),
            (Lines{"#DEBUG# - ReadMarkerFile returned 00000100",
                   "#DEBUG# - Top of Archive Main Loop with nid 00000100", kMajor + "00000100",
                   "#DEBUG# - Invoking child process"}));
}

TEST_F(SupervisorReportTest, GivingUpIsTracedBeforeTheEndOfTheLoop) {
  Run(std::vector<ScriptedWorker>(3, CrashesAt("0")));
  const Lines lines = LogLines();
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(Lines(lines.end() - 3, lines.end()),
            (Lines{kGaveUp, "#DEBUG# - End of Archive Main Loop",
                   "#DEBUG# - CountInputDocuments fopen failed"}));
}

TEST_F(SupervisorReportTest, DebugLinesAreAbsentWithoutDebug) {
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

TEST_F(SupervisorReportTest, AuditReportBeginsWithTheStartAndEndsWithTheClosingBlock) {
  Run({kCompletes});
  EXPECT_EQ(AuditLabels(ReadLines(PathOf(L"audit.txt"))), kLabelsOfARun);
}

TEST_F(SupervisorReportTest, AuditReportHasItsClosingBlockAfterGivingUp) {
  Run(std::vector<ScriptedWorker>(3, CrashesAt("0")));
  EXPECT_EQ(AuditLabels(ReadLines(PathOf(L"audit.txt"))), kLabelsOfARun);
}

TEST_F(SupervisorReportTest, EveryLostAttemptCountsAsAFailedDocument) {
  Run(std::vector<ScriptedWorker>(4, CrashesAt("000012F6")));
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).at(9), "Failed total documents   :        3");
}

TEST_F(SupervisorReportTest, StartThatIsAuditedIsTheTimeOfTheRun) {
  const std::time_t before = std::time(nullptr);
  Run({kCompletes});
  const std::time_t after = std::time(nullptr);
  Lines possible;
  for (std::time_t time = before; time <= after; ++time) {
    possible.push_back("Archive started at: " + WideToUtf8(FormatLocalTime(time)));
  }
  EXPECT_NE(std::find(possible.begin(), possible.end(), ReadLines(PathOf(L"audit.txt")).front()),
            possible.end());
}

TEST_F(SupervisorReportTest, StartIsAuditedBeforeTheFirstWorker) {
  class AuditReader : public WorkerLauncher {
   public:
    explicit AuditReader(std::wstring audit) : audit_(std::move(audit)) {}
    WorkerEnding RunToEnd(const std::wstring&, const EndSignal&) override {
      lines = ReadLines(audit_);
      return kCleanExit;
    }
    Lines lines;

   private:
    std::wstring audit_;
  };
  AuditReader launcher(PathOf(L"audit.txt"));
  RunSupervisor(launcher, L"run", ProcessRunLog());
  EXPECT_EQ(AuditLabels(launcher.lines), Lines{"Archive started at"});
}

}  // namespace
}  // namespace larkspan
