#include "console/follow/Judgement.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

RunFacts RunAmongNotes() {
  RunFacts run;
  run.phase = Phase::kDocuments;
  run.hasBegunNotes = true;
  return run;
}

RunFacts RunThatDiedIn(Phase phase) {
  RunFacts run;
  run.phase = phase;
  run.lastError = "Error opening database (no access)";
  return run;
}

console::Account AccountWith(std::uint64_t listed, std::size_t losses, std::size_t findings) {
  console::Account account;
  account.notes.listed = listed;
  account.notes.exported = listed - losses;
  for (std::size_t i = 0; i < losses; ++i) {
    account.losses.push_back(
        {LossKind::kNote, static_cast<std::uint32_t>(i + 1), "export", "damaged"});
  }
  for (std::size_t i = 0; i < findings; ++i) {
    account.findings.push_back({"unaccounted", std::nullopt, "", "note 1 has no file"});
  }
  return account;
}

void ExpectJudgement(const Judgement& judgement, ExitCode code, const std::string& reason) {
  EXPECT_EQ(judgement.code, code) << judgement.reason;
  EXPECT_EQ(judgement.reason, reason);
}

TEST(JudgementTest, AnExportThatIsAccountedForIsWhole) {
  ExpectJudgement(Judge(RunAmongNotes(), std::nullopt, AccountWith(3, 0, 0), std::nullopt),
                  ExitCode::kWhole, "");
}

TEST(JudgementTest, AnEmptyDatabaseIsWhole) {
  RunFacts run;
  run.phase = Phase::kDocuments;
  ExpectJudgement(Judge(run, std::nullopt, AccountWith(0, 0, 0), std::nullopt), ExitCode::kWhole,
                  "");
}

TEST(JudgementTest, LossesThatAreListedAreTold) {
  ExpectJudgement(Judge(RunAmongNotes(), std::nullopt, AccountWith(9, 2, 0), std::nullopt),
                  ExitCode::kLosses, "2 losses, each of which is listed");
}

TEST(JudgementTest, OneLossIsNoSeveralLosses) {
  ExpectJudgement(Judge(RunAmongNotes(), std::nullopt, AccountWith(9, 1, 0), std::nullopt),
                  ExitCode::kLosses, "one loss, which is listed");
}

TEST(JudgementTest, AnExporterThatNeverWorkedCouldNotRun) {
  RunFacts run;
  run.notStarted = "larkspan.exe could not be started (error 2)";
  for (const auto& stop : {std::optional<Stop>(), std::optional(Stop{"", "user"})}) {
    ExpectJudgement(Judge(run, stop, std::nullopt, std::nullopt), ExitCode::kCouldNotRun,
                    run.notStarted);
  }
}

struct StopRow {
  const char* by;
  ExitCode code;
  const char* reason;
};

constexpr StopRow kStopRows[] = {
    {"user", ExitCode::kStopped, "stopped by the user"},
    {"input", ExitCode::kStopped, "stopped: standard input has come to its end"},
    {"output", ExitCode::kStopped, "stopped: nobody reads standard output"},
    {"disk", ExitCode::kIncomplete, "stopped: less than 64 MB are free on the disk"},
    {"give-up", ExitCode::kIncomplete,
     "given up: too many notes in a row were lost for the same cause"},
    {"stall", ExitCode::kIncomplete, "ended: there was no progress"},
};

TEST(JudgementTest, EachStopHasItsCodeAndReason) {
  for (const StopRow& row : kStopRows) {
    ExpectJudgement(Judge(RunAmongNotes(), Stop{"", row.by}, AccountWith(9, 0, 1), std::nullopt),
                    row.code, row.reason);
    ExpectJudgement(Judge(RunAmongNotes(), Stop{"", row.by}, std::nullopt, std::nullopt), row.code,
                    row.reason);
  }
}

TEST(JudgementTest, AStopThatCameTooLateHasStoppedNothing) {
  for (const StopRow& row : kStopRows) {
    ExpectJudgement(Judge(RunAmongNotes(), Stop{"", row.by}, AccountWith(9, 0, 0), std::nullopt),
                    ExitCode::kWhole, "");
  }
}

TEST(JudgementTest, AHangBeforeTheNotesNamesThePhase) {
  ExpectJudgement(
      Judge(RunThatDiedIn(Phase::kOpening), Stop{"", "stall"}, AccountWith(0, 0, 1), std::nullopt),
      ExitCode::kCouldNotRun, "ended: there was no progress while it was opening the database");
}

TEST(JudgementTest, AStopOfTheUserBeforeTheNotesIsAStop) {
  ExpectJudgement(
      Judge(RunThatDiedIn(Phase::kOpening), Stop{"", "user"}, AccountWith(0, 0, 1), std::nullopt),
      ExitCode::kStopped, "stopped by the user");
}

TEST(JudgementTest, ADeathBeforeTheNotesNamesThePhaseAndTheError) {
  const std::pair<Phase, const char*> rows[] = {
      {Phase::kStarting, "starting the Notes runtime"},
      {Phase::kOpening, "opening the database"},
      {Phase::kProperties, "exporting the database's properties"},
      {Phase::kViews, "exporting the views"},
      {Phase::kScanning, "listing the notes"},
      {Phase::kDocuments, "exporting the notes"},
  };
  for (const auto& [phase, deed] : rows) {
    const std::string reason = "the exporter ended while it was " + std::string(deed) +
                               ": Error opening database (no access)";
    ExpectJudgement(Judge(RunThatDiedIn(phase), std::nullopt, AccountWith(0, 0, 2), std::nullopt),
                    ExitCode::kCouldNotRun, reason);
    ExpectJudgement(Judge(RunThatDiedIn(phase), std::nullopt, std::nullopt, std::nullopt),
                    ExitCode::kCouldNotRun, reason);
  }
}

TEST(JudgementTest, WhatCannotBeJudgedIsIncomplete) {
  RunFacts run = RunAmongNotes();
  run.cannotJudge = "The folder cannot be listed.";
  ExpectJudgement(Judge(run, std::nullopt, std::nullopt, std::nullopt), ExitCode::kIncomplete,
                  "The folder cannot be listed.");
}

TEST(JudgementTest, FindingsAreIncompleteAndTheFirstIsTold) {
  RunFacts run = RunAmongNotes();
  ExpectJudgement(Judge(run, std::nullopt, AccountWith(9, 1, 1), std::nullopt),
                  ExitCode::kIncomplete, "not accounted for: note 1 has no file");
  run.lastError = "Maximum retries exceeded";
  ExpectJudgement(Judge(run, std::nullopt, AccountWith(9, 1, 3), std::nullopt),
                  ExitCode::kIncomplete,
                  "not accounted for: note 1 has no file, and 2 more (Maximum retries exceeded)");
}

struct LimitRow {
  LossLimit limit;
  std::uint64_t listed;
  std::size_t losses;
  bool isOver;
};

constexpr LimitRow kLimitRows[] = {
    {{0, false}, 9, 1, true},       {{1, false}, 9, 1, false},     {{1, false}, 9, 2, true},
    {{10, true}, 100, 10, false},   {{10, true}, 100, 11, true},   {{0, true}, 1000, 1, true},
    {{2.5, true}, 1000, 25, false}, {{2.5, true}, 1000, 26, true}, {{100, true}, 5, 5, false},
};

TEST(JudgementTest, MoreLossesThanAllowedAreIncomplete) {
  for (const LimitRow& row : kLimitRows) {
    const Judgement judgement =
        Judge(RunAmongNotes(), std::nullopt, AccountWith(row.listed, row.losses, 0), row.limit);
    EXPECT_EQ(judgement.code, row.isOver ? ExitCode::kIncomplete : ExitCode::kLosses)
        << row.limit.value << " of " << row.listed << ", " << row.losses;
    EXPECT_EQ(judgement.reason == "more is lost than --max-losses allows", row.isOver);
  }
}

TEST(JudgementTest, NoLossIsOverNoLimit) {
  for (const LossLimit limit : {LossLimit{0, false}, LossLimit{0, true}}) {
    EXPECT_EQ(Judge(RunAmongNotes(), std::nullopt, AccountWith(5, 0, 0), limit).code,
              ExitCode::kWhole);
  }
}

}  // namespace
}  // namespace larkspan::console
