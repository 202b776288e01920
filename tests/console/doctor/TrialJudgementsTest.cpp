// What doctor makes of what a worker left.
#include <gtest/gtest.h>

#include "console/doctor/DatabaseChecks.h"
#include "console/doctor/EndingText.h"
#include "console/doctor/RuntimeChecks.h"

namespace larkspan::console {
namespace {

using Kind = TrialEnd::Kind;
using NoteIds = std::vector<std::uint32_t>;

constexpr std::uint64_t kTwoMinutes = 120'000;

TEST(EndingTextTest, NamesTheSystemsCodes) {
  EXPECT_EQ(EndingText(0), "exit code 0");
  EXPECT_EQ(EndingText(77), "exit code 77");
  EXPECT_EQ(EndingText(0xC0000005), "C0000005, an access violation");
  EXPECT_EQ(EndingText(0xC0000001), "C0000001");
  EXPECT_FALSE(IsLoadFailure(0xC0000005));
  EXPECT_FALSE(IsLoadFailure(1));
  EXPECT_TRUE(IsLoadFailure(0xC0000135));
  EXPECT_TRUE(IsLoadFailure(0xC0000142));
}

class JudgeRuntimeTest : public ::testing::Test {
 protected:
  void Expect(CheckResult result, const std::string& detail, const std::string& adviceBegins) {
    const CheckFinding finding = JudgeRuntime(trial_, kTwoMinutes);
    EXPECT_EQ(finding.result, result);
    EXPECT_EQ(finding.detail, detail);
    EXPECT_TRUE(finding.advice.starts_with(adviceBegins)) << finding.advice;
    EXPECT_EQ(finding.advice.empty(), adviceBegins.empty());
  }

  // As a worker leaves it whose runtime starts.
  RuntimeTrial trial_{{}, "Error opening database (File does not exist)", {}, "CN=Ada"};
};

TEST_F(JudgeRuntimeTest, ADatabaseThatIsNotThereIsWhatWasAskedFor) {
  Expect(CheckResult::kPassed, "it starts and ends in a process of larkspan.exe", "");
}

TEST_F(JudgeRuntimeTest, AnIdThatCannotBeSwitchedToIsAnothersFault) {
  trial_ = {{}, "Unable to switch ID (Wrong password)", {}, ""};
  Expect(CheckResult::kPassed, "it starts and ends in a process of larkspan.exe", "");
  const CheckFinding user = JudgeUser(trial_);
  EXPECT_EQ(user.result, CheckResult::kFailed);
  EXPECT_EQ(user.detail, "Unable to switch ID (Wrong password)");
  EXPECT_EQ(user.advice, "Give the right ID file with --id-file, and its password.");
}

TEST_F(JudgeRuntimeTest, ALibraryThatFindsNoConfigurationIsTold) {
  trial_ = {{}, "Unable to locate notes.ini", {}, ""};
  Expect(CheckResult::kFailed, "the library finds no notes.ini", "Name the notes.ini");
}

TEST_F(JudgeRuntimeTest, AStatusOfTheStartIsTold) {
  trial_ = {{}, "", {"Notes initialization failed (1A6)"}, ""};
  Expect(CheckResult::kFailed, "Notes initialization failed (1A6)", "Start Notes by hand");
}

TEST_F(JudgeRuntimeTest, AProcessThatIsNotStartedIsTold) {
  trial_ = {{Kind::kNotStarted, 5, false}, "", {}, ""};
  Expect(CheckResult::kFailed, "larkspan.exe could not be started (error 5)", "Give this user");
}

TEST_F(JudgeRuntimeTest, AHangIsToldWithItsTime) {
  trial_ = {{Kind::kHung, 0, false}, "", {}, ""};
  Expect(CheckResult::kFailed, "larkspan.exe gave no sign for 2 min and was ended",
         "Start Notes by hand");
}

TEST_F(JudgeRuntimeTest, ACrashIsToldWithItsCode) {
  trial_ = {{Kind::kDied, 0xC0000005, false}, "", {}, ""};
  Expect(CheckResult::kFailed,
         "larkspan.exe ended by itself, unexpectedly (C0000005, an access violation)",
         "Start Notes by hand");
}

TEST_F(JudgeRuntimeTest, AProgramThatIsNotLoadedIsTold) {
  trial_ = {{Kind::kDied, 0xC0000135, false}, "", {}, ""};
  Expect(CheckResult::kFailed,
         "Windows could not load larkspan.exe (C0000135, a library was not found)",
         "Put larkspan.exe");
}

TEST_F(JudgeRuntimeTest, ACrashAtTheEndIsAWarning) {
  trial_.end = {Kind::kDied, 0xC0000005, false};
  Expect(CheckResult::kWarning,
         "it starts, and then larkspan.exe ended by itself, unexpectedly (C0000005, an access "
         "violation)",
         "Start Notes by hand");
}

TEST_F(JudgeRuntimeTest, AnotherFaultBehindTheStartFails) {
  trial_.error = "Error creating DXL Exporter (Notes error 1181)";
  Expect(CheckResult::kFailed, "it starts, but: Error creating DXL Exporter (Notes error 1181)",
         "Use a machine with a newer Notes");
}

TEST_F(JudgeRuntimeTest, AStopIsNoFinding) {
  trial_ = {{Kind::kStopped, 0, false}, "", {}, ""};
  Expect(CheckResult::kNotTried, "stopped by the user", "");
}

TEST(JudgeUserTest, SaysWhoItIs) {
  EXPECT_EQ(JudgeUser({{}, "", {}, "CN=Ada"}).detail, "CN=Ada");
  EXPECT_EQ(JudgeUser({{}, "", {}, "CN=Ada"}).result, CheckResult::kPassed);
  EXPECT_EQ(JudgeUser({}).result, CheckResult::kWarning);
  EXPECT_EQ(JudgeUser({}).detail, "the library does not tell as whom it works");
}

class JudgeDatabaseTest : public ::testing::Test {
 protected:
  JudgeDatabaseTest() {
    request_.run.server = "Mill";
    request_.run.path = "orders.nsf";
  }

  DoctorRequest request_;
  DatabaseTrial trial_;
};

TEST_F(JudgeDatabaseTest, OneThatOpensIsGood) {
  trial_.end.isOpen = true;
  EXPECT_EQ(JudgeOpening(trial_, request_).detail, "Mill!!orders.nsf opens");
}

TEST_F(JudgeDatabaseTest, TheWordsOfTheLogSayWhyOneDoesNot) {
  trial_.error = "Error opening database (Server not responding)";
  const CheckFinding finding = JudgeOpening(trial_, request_);
  EXPECT_EQ(finding.result, CheckResult::kFailed);
  EXPECT_EQ(finding.detail, "Mill!!orders.nsf: Error opening database (Server not responding)");
  EXPECT_TRUE(finding.advice.ends_with("needs --full-access."));
  request_.run.fullAccess = true;
  EXPECT_TRUE(JudgeOpening(trial_, request_).advice.ends_with("administrator with full access."));
}

TEST_F(JudgeDatabaseTest, ACrashWhileItIsOpenedIsTold) {
  trial_.end = {Kind::kDied, 0xC0000005, false};
  EXPECT_EQ(JudgeOpening(trial_, request_).detail,
            "larkspan.exe ended by itself, unexpectedly (C0000005, an access violation)");
  trial_.end = {};
  EXPECT_EQ(JudgeOpening(trial_, request_).result, CheckResult::kFailed);
}

TEST_F(JudgeDatabaseTest, ASizeThatIsNotToldIsAWarning) {
  EXPECT_EQ(JudgeSize(trial_).result, CheckResult::kWarning);
  EXPECT_EQ(JudgeSize(trial_).detail, "the library does not tell it");
  trial_.warnings = {"Error exporting ACL (y)", "Unable to read database quota (x)"};
  EXPECT_EQ(JudgeSize(trial_).detail,
            "the library does not tell it: Unable to read database quota (x)");
  trial_.size = 6291456;
  EXPECT_EQ(JudgeSize(trial_).detail, "6.0 MB (6,291,456 bytes)");
}

TEST_F(JudgeDatabaseTest, AListThatIsThereIsGoodWhateverCameAfterIt) {
  trial_.list.reading = FileReading::kRead;
  trial_.list.ids = {2, 6};
  trial_.end.kind = Kind::kDied;
  EXPECT_EQ(JudgeList(trial_, request_).detail, "2 notes");
  EXPECT_EQ(JudgeList(trial_, request_).result, CheckResult::kPassed);
  trial_.warnings = {"Unable to read database quota (x)", "Error exporting ACL (Notes error 585)"};
  EXPECT_EQ(JudgeList(trial_, request_).result, CheckResult::kWarning);
  EXPECT_EQ(JudgeList(trial_, request_).detail, "2 notes; Error exporting ACL (Notes error 585)");
}

TEST_F(JudgeDatabaseTest, AListThatIsNotThereFails) {
  EXPECT_EQ(JudgeList(trial_, request_).detail, "no list was made");
  trial_.end.kind = Kind::kHung;
  EXPECT_EQ(JudgeList(trial_, request_).detail,
            "larkspan.exe gave no sign for 2 min and was ended");
  trial_.error = "Error retrieving notes (Notes error 553)";
  EXPECT_EQ(JudgeList(trial_, request_).detail, "Error retrieving notes (Notes error 553)");
  EXPECT_EQ(JudgeList(trial_, request_).result, CheckResult::kFailed);
  trial_.list.reading = FileReading::kRead;
  trial_.list.faultyLines = 1;
  EXPECT_EQ(JudgeList(trial_, request_).result, CheckResult::kFailed);
}

TEST(HandfulTest, TakesFromTheBeginningToTheEnd) {
  NoteIds list;
  for (std::uint32_t i = 1; i <= 101; ++i) list.push_back(i * 4);
  EXPECT_EQ(Handful(list), (NoteIds{4, 104, 204, 304, 404}));
}

TEST(HandfulTest, TakesAllOfFew) {
  EXPECT_EQ(Handful({}), NoteIds());
  EXPECT_EQ(Handful({6}), NoteIds{6});
  EXPECT_EQ(Handful({6, 10, 14}), (NoteIds{6, 10, 14}));
  EXPECT_EQ(Handful({2, 6, 10, 14, 18}), (NoteIds{2, 6, 10, 14, 18}));
}

TEST(HandfulTest, TakesNoneThatNoWorkerCouldBeginBehind) {
  EXPECT_EQ(Handful({0, 1, 6}), NoteIds{6});
}

}  // namespace
}  // namespace larkspan::console
