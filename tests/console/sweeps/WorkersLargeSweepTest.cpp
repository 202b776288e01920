// Many notes, a hundred of them poisoned in six ways, exported by three workers and by one. There
// are ten thousand notes where the environment names seeds, and otherwise a thousand, which is
// quick.
#include <cstdlib>

#include "tests/console/system/WorkersTest.h"
#include "tests/support/RunTexts.h"

namespace larkspan::console {
namespace {

using testing::NoteIdText;

constexpr int kPoisonedAmongMany = 100;

// Ten of each of the last four, which end the worker, and thirty of each of the first two.
constexpr const char* kWaysToPoison[] = {R"("entry": "NSFNoteOpen", "status": 546)",
                                         R"("entry": "DXLExportNote", "status": 1181)",
                                         R"("entry": "DXLExportNote", "action": "accessViolation")",
                                         R"("entry": "DXLExportNote", "action": "exit")",
                                         R"("entry": "NSFNoteOpen", "action": "throw")",
                                         R"("entry": "DXLExportNote", "action": "stackOverflow")"};

std::string WayToPoison(int number) {
  const int turn = number % 10;
  return kWaysToPoison[turn < 6 ? turn % 2 : turn - 4];
}

class WorkersLargeSweepTest : public WorkersTest {
 protected:
  static int Notes() { return std::getenv("LARKSPAN_SWEEP_SEEDS") == nullptr ? 1000 : 10'000; }

  static std::string PoisonedNote(int number) {
    constexpr int kFirstNote = 0x1000;
    const int place = number * (Notes() / kPoisonedAmongMany) + 7;
    return NoteIdText(static_cast<std::uint32_t>(kFirstNote + 4 * place));
  }

  static std::string Plan() {
    std::string plan;
    for (int i = 0; i < kPoisonedAmongMany; ++i)
      plan += (plan.empty() ? "[{" : ", {") + WayToPoison(i) + R"(, "note": ")" + PoisonedNote(i) +
              "\"}";
    return plan + "]";
  }
};

TEST_F(WorkersLargeSweepTest, AHundredPoisonedNotesCostWhatTheyCostOneWorker) {
  run_.AddDatabase(database_,
                   R"({"generate": {"textBytes": 40, "profileEvery": 500, "documents": )" +
                       std::to_string(Notes()) + "}}");
  run_.SetFaults(Plan());
  const ConsoleEnd end = Export({L"--workers", L"3", L"--json"});
  EXPECT_EQ(end.code, 3u);
  ExpectLikeAlone(end);
  const Json losses = AccountOf(out_).at("losses");
  ASSERT_EQ(losses.size(), static_cast<std::size_t>(kPoisonedAmongMany));
  for (int i = 0; i < kPoisonedAmongMany; ++i)
    EXPECT_EQ(losses[static_cast<std::size_t>(i)].at("id"), PoisonedNote(i));
  EXPECT_EQ(Outcome().at("restarts").size(), 40u);
}

}  // namespace
}  // namespace larkspan::console
