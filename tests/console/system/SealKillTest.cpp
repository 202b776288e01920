// The real program is ended by force while it seals: at each of its steps, where something in its
// way keeps it there, and at moments drawn from a seed. Called again, it makes a valid bag of the
// same payload.
#include <windows.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <random>

#include "console/account/Outcome.h"
#include "console/bag/Bag.h"
#include "console/bag/SealState.h"
#include "tests/console/account/ExampleOutcome.h"
#include "tests/console/account/HandMadeExport.h"
#include "tests/console/system/ExportTest.h"
#include "tests/support/ParameterName.h"

namespace larkspan::console {
namespace {

using testing::OutputTree;
using testing::ReadOutputTree;

// While it is held, nobody can give the file or folder another name.
testing::UniqueSystemHandle HoldInPlace(const std::wstring& path) {
  return testing::UniqueSystemHandle(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

class SealKillTest : public ExportTest {
 protected:
  void WriteExport() {
    export_.emplace();
    export_->Write();
    console::Outcome outcome = RunningOutcome();
    outcome.state = console::Outcome::State::kEnded;
    outcome.exitCode = ExitCode::kWhole;
    outcome.archive = true;
    ASSERT_TRUE(WriteOutcome(export_->folder(), outcome));
    before_ = ReadOutputTree(export_->folder());
  }

  std::wstring In(const std::wstring& name) const { return export_->folder() + L"\\" + name; }

  std::unique_ptr<ConsoleProcess> StartSeal() const { return Start({L"seal", export_->folder()}); }

  static void Kill(ConsoleProcess& process) {
    process.EndByForce();
    process.WaitForEnd();
    process.AwaitNothingLeft();
  }

  // Nothing but a sealing works there, and nothing is changed.
  void ExpectInterrupted() const {
    const OutputTree before = ReadOutputTree(export_->folder());
    const ConsoleEnd end = Run({L"verify", export_->folder()});
    EXPECT_EQ(end.code, 2u) << end.output;
    EXPECT_TRUE(Holds(end.errors, "A sealing was interrupted there")) << end.errors;
    EXPECT_EQ(testing::DescribeDifferences(before, ReadOutputTree(export_->folder())), "");
  }

  void ExpectSealsNow() const {
    const ConsoleEnd end = Run({L"seal", export_->folder()});
    EXPECT_EQ(end.code, 0u) << end.output << end.errors;
    std::string whyNot;
    const std::optional<BagVerdict> verdict = JudgeBag(export_->folder(), {}, whyNot);
    ASSERT_TRUE(verdict) << whyNot;
    EXPECT_TRUE(verdict->IsValid()) << verdict->errors.front().text;
    EXPECT_TRUE(verdict->warnings.empty());
    EXPECT_EQ(Run({L"verify", export_->folder()}).code, 0u);
    EXPECT_EQ(testing::DescribeDifferences(before_, ReadOutputTree(In(L"data"))), "");
    for (const wchar_t* stage : {L"data.new", L"bagit.txt.new", L"manifest-sha256.txt.new"})
      EXPECT_FALSE(Exists(In(stage)));
  }

  std::optional<HandMadeExport> export_;
  OutputTree before_;
};

// What is held, and what is there when the sealing has come to it.
struct MoveStep {
  std::string name;
  std::wstring held;
  std::wstring awaited;
};

class SealKillMoveTest : public SealKillTest, public ::testing::WithParamInterface<MoveStep> {};

TEST_P(SealKillMoveTest, EndedBeforeThisIsMovedItGoesOnWhenItIsCalledAgain) {
  WriteExport();
  MakeFolder(In(L"data.new"));
  std::optional<testing::UniqueSystemHandle> held = HoldInPlace(In(GetParam().held));
  const auto process = StartSeal();
  EXPECT_TRUE(AwaitCondition([&] { return Exists(In(GetParam().awaited)); }));
  Kill(*process);
  held.reset();
  EXPECT_EQ(SealStateOf(export_->folder()), SealState::kMoving);
  ExpectInterrupted();
  ExpectSealsNow();
}

const std::vector<MoveStep> kMoveSteps = {
    {"Acl", L"acl.dxl", L"data.new\\data"},
    {"IdTable", L"idtable.txt", L"data.new\\acl.dxl"},
    {"Audit", L"audit.txt", L"data.new\\idtable.txt"},
    {"Outcome", L"outcome.json", L"data.new\\audit.txt"},
    {"Payload", L"data.new", L"data.new\\outcome.json"},
};

INSTANTIATE_TEST_SUITE_P(Steps, SealKillMoveTest, ::testing::ValuesIn(kMoveSteps), kNameOf);

class SealKillListTest : public SealKillTest,
                         public ::testing::WithParamInterface<const wchar_t*> {};

TEST_P(SealKillListTest, EndedBeforeThisListHasItsNameItGoesOnWhenItIsCalledAgain) {
  WriteExport();
  std::optional<testing::UniqueSystemHandle> held = HoldInPlace(In(L"outcome.json"));
  const auto process = StartSeal();
  EXPECT_TRUE(AwaitCondition([&] { return Exists(In(L"data.new\\audit.txt")); }));
  // Where a folder has the name, no file gets it.
  MakeFolder(In(GetParam()));
  held.reset();
  EXPECT_TRUE(AwaitCondition([&] { return Exists(In(GetParam() + std::wstring(L".new"))); }));
  Kill(*process);
  EXPECT_TRUE(RemoveDirectoryW(In(GetParam()).c_str()));
  EXPECT_EQ(SealStateOf(export_->folder()), SealState::kMoved);
  ExpectInterrupted();
  ExpectSealsNow();
}

INSTANTIATE_TEST_SUITE_P(Lists, SealKillListTest,
                         ::testing::Values(L"manifest-sha256.txt", L"bag-info.txt",
                                           L"tagmanifest-sha256.txt", L"bagit.txt"));

// Half of the moments are drawn from the time that all of it takes, half from that of the moves.
TEST_F(SealKillTest, EndedAtAnyMomentItGoesOnWhenItIsCalledAgain) {
  WriteExport();
  const ULONGLONG begun = GetTickCount64();
  ASSERT_EQ(Run({L"seal", export_->folder()}).code, 0u);
  const auto wholeTime = static_cast<unsigned>(GetTickCount64() - begun);
  std::mt19937 random(20261122);
  for (int i = 0; i < 12; ++i) {
    WriteExport();
    const auto process = StartSeal();
    const ULONGLONG latest = GetTickCount64() + 10'000;
    if (i % 2 == 0) {
      Sleep(random() % wholeTime);
    } else {
      while (!Exists(In(L"data.new")) && !Exists(In(L"bagit.txt")) && GetTickCount64() < latest) {
      }
      Sleep(random() % 20);
    }
    Kill(*process);
    const SealState state = SealStateOf(export_->folder());
    if (state == SealState::kMoving || state == SealState::kMoved) ExpectInterrupted();
    ExpectSealsNow();
  }
}

}  // namespace
}  // namespace larkspan::console
