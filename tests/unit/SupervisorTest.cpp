// The workers that the supervisor starts, and what it says when one ends badly.
#include "tests/support/SupervisorTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "supervision/Supervisor.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

TEST_F(SupervisorTest, FirstWorkerStartsAtZero) {
  EXPECT_EQ(Run({kCompletes}), CommandLines{L"run -l 00000000"});
}

TEST_F(SupervisorTest, WorkerWithoutMarkerEndsTheRun) {
  EXPECT_EQ(Run({kCompletes, kCompletes}).size(), 1u);
}

TEST_F(SupervisorTest, MarkerOfAnEarlierRunIsNotTakenForTheFirstWorkers) {
  WriteBytes(InOutputFolder(output::kMarker), "00000FF2\r\n");
  EXPECT_EQ(Run({kCompletes, kCompletes}).size(), 1u);
  EXPECT_EQ(Complaints(), Lines());
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

TEST_F(SupervisorTest, WorkerThatFailsWithoutANoteInItsMarkerIsAnErrorLine) {
  for (const std::optional<std::string>& marker :
       {std::optional<std::string>(), std::optional<std::string>("FFFFFFFF\r\n")}) {
    std::filesystem::remove(PathOf(L"log.txt"));
    Run({{kAccessViolation, marker}});
    EXPECT_EQ(Complaints(), Lines{kEndedOutsideANote});
  }
}

TEST_F(SupervisorTest, WorkerThatEndsEarlyWithTheCodeOfASuccessIsAnErrorLine) {
  Run({{{WorkerEnding::Kind::kExited, 0}, std::nullopt}});
  EXPECT_EQ(Complaints(),
            Lines{"#ERROR# - Child process returned 0 outside a note; the export may be "
                  "incomplete"});
}

TEST_F(SupervisorTest, WorkerThatEndsEarlyWithAnUnknownCodeIsAnErrorLine) {
  Run({{{WorkerEnding::Kind::kExitCodeUnknown, 0}, std::nullopt}});
  EXPECT_EQ(Complaints(),
            Lines{"#ERROR# - Child process ended outside a note; the export may be incomplete"});
}

TEST_F(SupervisorTest, WorkerThatFailsAfterItsOwnEndIsNoErrorLine) {
  Run({{{WorkerEnding::Kind::kExited, 0xC0000005, true}, std::nullopt}});
  EXPECT_EQ(Complaints(), Lines());
}

TEST_F(SupervisorTest, LaterWorkerThatFailsWithoutMarkerIsAnErrorLine) {
  Run({CrashesAt("00000100"), {kAccessViolation, std::nullopt}});
  EXPECT_EQ(Complaints(), (Lines{kMajor + "00000100", kEndedOutsideANote, Mismatch(1)}));
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

// Supervises in a folder that the settings do not name.
class SupervisorElsewhereTest : public SupervisorTest {
 protected:
  std::wstring Elsewhere(const wchar_t* name) const { return folder_ / name; }

  void RunElsewhere(LogLevel minimumLevel, std::vector<ScriptedWorker> script) {
    ScriptedLauncher launcher(std::move(script), folder_.path());
    RunSupervisor(launcher, L"run", RunLog(folder_.path(), minimumLevel));
  }

  const TempFolder folder_;
};

TEST_F(SupervisorElsewhereTest, EverythingStandsInTheFolderThatItIsGiven) {
  WriteBytes(PathOf(L"marker.txt"), "00000FF2\r\n");
  WriteBytes(Elsewhere(L"\\marker.txt"), "00000FF2\r\n");
  RunElsewhere(LogLevel::kWarning, {CrashesAt("00000100"), kCompletes});
  EXPECT_EQ(ReadLines(Elsewhere(L"\\log.txt")), (Lines{kMajor + "00000100", Mismatch(1)}));
  EXPECT_TRUE(Exists(Elsewhere(L"\\audit.txt")));
  EXPECT_FALSE(Exists(Elsewhere(L"\\marker.txt")));
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_FALSE(Exists(PathOf(L"audit.txt")));
  EXPECT_EQ(ReadBytes(PathOf(L"marker.txt")), "00000FF2\r\n");
}

TEST_F(SupervisorElsewhereTest, LogHasTheLevelThatItIsGiven) {
  RunElsewhere(LogLevel::kDebug, {kCompletes});
  EXPECT_EQ(ReadLines(Elsewhere(L"\\log.txt")).front(),
            "#DEBUG# - Top of Archive Main Loop with nid 00000000");
}

// The workers of a part of a run are supervised as those of a whole one; only the report has none
// of their blocks.
TEST_F(SupervisorElsewhereTest, APartIsSupervisedAsARun) {
  const std::vector<std::vector<ScriptedWorker>> scripts = {
      {kCompletes},
      {CrashesAt("00000100"), CrashesAt("00000100"), CrashesAt("00000108"), kCompletes},
      {CrashesAt("000000FF"), CrashesAt("000000FF"), CrashesAt("000000FF")},
      {{kAccessViolation, std::nullopt}},
      {{{WorkerEnding::Kind::kNotCreated, 2}, std::nullopt}}};
  for (const std::vector<ScriptedWorker>& script : scripts) {
    std::filesystem::remove(PathOf(L"log.txt"));
    std::filesystem::remove(Elsewhere(L"\\log.txt"));
    ScriptedLauncher whole(script);
    RunSupervisor(whole, L"run", ProcessRunLog(), {0xFF});
    ScriptedLauncher part(script, folder_.path());
    RunWorkers(part, L"run", RunLog(folder_.path(), LogLevel::kWarning), {0xFF});
    EXPECT_EQ(part.commandLines(), whole.commandLines());
    Lines complaints = Complaints();
    std::erase_if(complaints, [](const auto& line) { return line.find("mismatch") != line.npos; });
    EXPECT_EQ(Exists(Elsewhere(L"\\log.txt")) ? ReadLines(Elsewhere(L"\\log.txt")) : Lines(),
              complaints);
    EXPECT_FALSE(Exists(Elsewhere(L"\\audit.txt")));
    EXPECT_FALSE(Exists(Elsewhere(L"\\marker.txt")));
  }
}

TEST_F(SupervisorTest, MarkerThatIsHeldForAMomentDoesNotStay) {
  const FileFaults faults("delete marker.txt 2-3 sharingViolation");
  EXPECT_EQ(Run({CrashesAt("00000100"), kCompletes}).size(), 2u);
  EXPECT_EQ(pauses(), std::vector<long long>(2, 1000));
  EXPECT_EQ(Complaints(), (Lines{kMajor + "00000100", Mismatch(1)}));
}

TEST_F(SupervisorTest, WhatAWorkerLeftOfANoteIsDeletedAtTheEnd) {
  WriteBytes(PathOf(L"temp.tmp"), "half a note");
  Run({CrashesAt("00000100"), {kAccessViolation, std::nullopt}});
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
}

}  // namespace
}  // namespace larkspan
