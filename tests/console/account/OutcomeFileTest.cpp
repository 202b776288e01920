// outcome.json is replaced whole, read back as it was, and whatever else stands there is refused.
#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "console/account/Outcome.h"
#include "tests/console/account/ExampleOutcome.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

using nlohmann::json;

class OutcomeFileTest : public ::testing::Test {
 protected:
  std::string Text() const { return ReadBytes(folder_ / L"\\outcome.json"); }

  // What is written of it after it was written and read.
  std::string TextAgain(const Outcome& outcome) {
    EXPECT_TRUE(WriteOutcome(folder_.path(), outcome));
    Outcome read;
    EXPECT_EQ(ReadOutcome(folder_.path(), read), OutcomeReading::kRead);
    EXPECT_TRUE(WriteOutcome(folder_.path(), read));
    return Text();
  }

  OutcomeReading ReadBack(const std::string& text) {
    WriteBytes(folder_ / L"\\outcome.json", text);
    Outcome outcome;
    outcome.host = "untouched";
    const OutcomeReading reading = ReadOutcome(folder_.path(), outcome);
    EXPECT_EQ(outcome.host == "untouched", reading != OutcomeReading::kRead);
    return reading;
  }

  TempFolder folder_;
};

TEST_F(OutcomeFileTest, EveryValueIsReadBack) {
  for (const Outcome& outcome : {RunningOutcome(), EndedOutcome()}) {
    ASSERT_TRUE(WriteOutcome(folder_.path(), outcome));
    const std::string text = Text();
    EXPECT_EQ(TextAgain(outcome), text);
  }
}

TEST_F(OutcomeFileTest, ValuesAreWhereTheyBelong) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), EndedOutcome()));
  Outcome read;
  ASSERT_EQ(ReadOutcome(folder_.path(), read), OutcomeReading::kRead);
  EXPECT_EQ(read.state, Outcome::State::kEnded);
  EXPECT_EQ(read.user, "Ada \xE6\x97\xA5");
  EXPECT_EQ(read.exitCode, ExitCode::kIncomplete);
  EXPECT_EQ(read.progress.views, 14u);
  EXPECT_EQ(read.progress.documentsDone, 8u);
  EXPECT_EQ(read.progress.note, 0x90Eu);
  EXPECT_EQ(read.restarts.at(0).note, 0x906u);
  EXPECT_FALSE(read.restarts.at(1).note);
  EXPECT_EQ(read.stop.value().by, "user");
  EXPECT_FALSE(read.views);
  EXPECT_TRUE(read.fullAccess);
  EXPECT_EQ(read.lostViews.at(0).kind, LossKind::kView);
  EXPECT_EQ(read.account.value().losses.at(4).kind, LossKind::kAcl);
  EXPECT_EQ(read.account.value().records.at(1).size, 5000000000u);
  EXPECT_EQ(read.account.value().folders.at(1).bytes, 6000000000u);
  EXPECT_EQ(read.account.value().notes.contradicted, 1u);
  EXPECT_EQ(read.account.value().Verdict(), ExitCode::kIncomplete);
}

TEST_F(OutcomeFileTest, WhatIsNotKnownYetIsNotThere) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), RunningOutcome()));
  const json written = json::parse(Text());
  EXPECT_EQ(written.at("state"), "running");
  for (const char* name : {"exitCode", "stop", "account"}) EXPECT_FALSE(written.contains(name));
  for (const char* name : {"views", "documents", "note"})
    EXPECT_FALSE(written.at("progress").contains(name));
}

TEST_F(OutcomeFileTest, AMissingFileIsMissing) {
  Outcome outcome;
  EXPECT_EQ(ReadOutcome(folder_.path(), outcome), OutcomeReading::kMissing);
  EXPECT_EQ(ReadOutcome(folder_ / L"\\none", outcome), OutcomeReading::kMissing);
}

TEST_F(OutcomeFileTest, NoPartOfAFileIsTakenForTheWhole) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), EndedOutcome()));
  const std::string text = Text();
  const std::size_t end = text.rfind('}');
  for (std::size_t size = 0; size <= end; ++size)
    ASSERT_EQ(ReadBack(text.substr(0, size)), OutcomeReading::kUnreadable) << size;
}

TEST_F(OutcomeFileTest, AnotherFormIsRefused) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), EndedOutcome()));
  const json whole = json::parse(Text());
  const auto isRefused = [&](const char* change) {
    return ReadBack(whole.patch(json::parse(change)).dump()) == OutcomeReading::kUnreadable;
  };
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/format", "value": 2}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/state", "value": "begun"}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/exitCode", "value": 6}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/exitCode", "value": "5"}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/command", "value": "export"}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/progress/note", "value": "90E"}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/account/losses", "value": {}}])"));
  EXPECT_TRUE(
      isRefused(R"([{"op": "replace", "path": "/account/losses/0/kind", "value": "money"}])"));
  EXPECT_TRUE(isRefused(R"([{"op": "replace", "path": "/account/records", "value": [7]}])"));
  for (const auto& [name, value] : whole.items()) {
    if (name == "exitCode" || name == "stop" || name == "account") continue;
    json less = whole;
    less.erase(name);
    EXPECT_EQ(ReadBack(less.dump()), OutcomeReading::kUnreadable) << name;
  }
}

TEST_F(OutcomeFileTest, WhatIsAddedLaterDoesNotDisturb) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), EndedOutcome()));
  json more = json::parse(Text());
  more["sums"] = json::array();
  EXPECT_EQ(ReadBack(more.dump()), OutcomeReading::kRead);
}

TEST_F(OutcomeFileTest, BytesThatAreNoTextAreReplaced) {
  Outcome outcome = EndedOutcome();
  outcome.path =
      "a\xFF"
      "b\xE4";
  outcome.account->losses[0].cause = std::string("\0\x1B", 2) + "\xC3";
  ASSERT_TRUE(WriteOutcome(folder_.path(), outcome));
  Outcome read;
  ASSERT_EQ(ReadOutcome(folder_.path(), read), OutcomeReading::kRead);
  EXPECT_EQ(read.path,
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(read.account->losses[0].cause, std::string("\0\x1B", 2) + "\xEF\xBF\xBD");
}

class RefusedOutcomeTest : public OutcomeFileTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedOutcomeTest, LeavesTheEarlierOne) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), RunningOutcome()));
  const std::string earlier = Text();
  {
    const PauseRecorder pauses;
    const FileFaults faults(GetParam());
    EXPECT_FALSE(WriteOutcome(folder_.path(), EndedOutcome()));
  }
  EXPECT_EQ(Text(), earlier);
  EXPECT_FALSE(Exists(folder_ / L"\\outcome.json.new"));
}

INSTANTIATE_TEST_SUITE_P(Faults, RefusedOutcomeTest,
                         ::testing::Values("open outcome.json.new * accessDenied",
                                           "write outcome.json.new * diskFull 100",
                                           "close outcome.json.new * diskFull",
                                           "move outcome.json * sharingViolation"),
                         [](const auto& test) { return "Fault" + std::to_string(test.index); });

TEST_F(OutcomeFileTest, AReaderHindersTheNextForAMomentOnly) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), RunningOutcome()));
  const HANDLE reader = CreateFileW((folder_ / L"\\outcome.json").c_str(), GENERIC_READ,
                                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(reader, INVALID_HANDLE_VALUE);
  const PauseRecorder pauses([&] { CloseHandle(reader); });
  EXPECT_TRUE(WriteOutcome(folder_.path(), EndedOutcome()));
  EXPECT_EQ(pauses.pauses(), std::vector<long long>{100});
  EXPECT_EQ(json::parse(Text()).at("state"), "ended");
}

TEST_F(OutcomeFileTest, AReaderThatStaysIsGivenUp) {
  ASSERT_TRUE(WriteOutcome(folder_.path(), RunningOutcome()));
  const PauseRecorder pauses;
  const FileFaults faults("move outcome.json * sharingViolation");
  EXPECT_FALSE(WriteOutcome(folder_.path(), EndedOutcome()));
  EXPECT_EQ(pauses.pauses().size(), 4u);
}

// tests/docs/check-outcome names a folder, and holds what is written there to the schema.
TEST_F(OutcomeFileTest, ExamplesAreWritten) {
  const wchar_t* const wanted = _wgetenv(L"LARKSPAN_OUTCOME_EXAMPLES");
  const std::wstring folder = wanted != nullptr ? wanted : folder_.path();
  for (const wchar_t* name : {L"\\running", L"\\ended"}) {
    std::filesystem::create_directories(folder + name);
    const bool runs = std::wstring_view(name) == L"\\running";
    EXPECT_TRUE(WriteOutcome(folder + name, runs ? RunningOutcome() : EndedOutcome()));
  }
}

TEST(AccountJsonTest, SaysTheVerdictAndTheCode) {
  Account account;
  EXPECT_EQ(json::parse(AccountJson(account)).at("verdict"), "whole");
  account.losses.push_back({});
  EXPECT_EQ(json::parse(AccountJson(account)).at("verdict"), "losses");
  EXPECT_EQ(json::parse(AccountJson(account)).at("exitCode"), 3);
  account.findings.push_back({});
  EXPECT_EQ(json::parse(AccountJson(account)).at("verdict"), "incomplete");
  EXPECT_EQ(json::parse(AccountJson(account)).at("exitCode"), 5);
  EXPECT_EQ(AccountJson(account).find('\n'), std::string::npos);
}

}  // namespace
}  // namespace larkspan::console
