// Ten thousand notes, a hundred of them poisoned in six ways.
#include "tests/console/system/ExportTest.h"
#include "tests/support/RunTexts.h"

namespace larkspan::console {
namespace {

using testing::NoteIdText;
using testing::OutputTree;

constexpr int kNotes = 10'000;
constexpr int kPoisoned = 100;
constexpr std::uint32_t kFirstNote = 0x1000;

struct Poison {
  const char* fault;  // What a fault of the plan says beside its note.
  const char* stage;
  const char* kind;
};

// Twenty notes end the worker, which costs a new one each time.
constexpr Poison kPoisons[] = {
    {R"("entry": "NSFNoteOpen", "status": 546)", "open", "note"},
    {R"("entry": "DXLExportNote", "status": 1181)", "export", "note"},
    {R"("entry": "NSFNoteOpen", "status": 2055)", "open", "note"},
    {R"("entry": "DXLExportNote", "status": 585)", "export", "note"},
    {R"("entry": "DXLExportNote", "action": "accessViolation")", "crash", "note"},
    {R"("entry": "DXLExportNote", "action": "exit")", "crash", "note"},
};

// The first four take turns but for each tenth of the poisoned notes, which ends its worker.
const Poison& PoisonOf(int number) {
  if (number % 10 == 3) return kPoisons[4];
  if (number % 10 == 7) return kPoisons[5];
  return kPoisons[number % 4];
}

std::uint32_t PoisonedNote(int number) {
  return kFirstNote + 4 * static_cast<std::uint32_t>(number * (kNotes / kPoisoned) + 37);
}

std::string Faults() {
  std::string plan;
  for (int i = 0; i < kPoisoned; ++i) {
    plan += (plan.empty() ? "[{" : ",\n{") + std::string(PoisonOf(i).fault) + R"(, "note": ")" +
            NoteIdText(PoisonedNote(i)) + "\"}";
  }
  return plan + "]";
}

// Without the files of the poisoned notes, and without the index lines of those that do not open.
OutputTree WithoutPoisoned(OutputTree tree) {
  std::string& index = tree.at("unidindex.txt");
  for (int i = 0; i < kPoisoned; ++i) {
    const std::string note = NoteIdText(PoisonedNote(i));
    tree.erase("data/" + note + ".dxl");
    tree.erase("profile/" + note + ".dxl");
    if (std::string("open") != PoisonOf(i).stage) continue;
    const std::size_t line = index.find(note + ",");
    index.erase(line, index.find('\n', line) + 1 - line);
  }
  return tree;
}

class ExportLargeTest : public ExportTest {
 protected:
  static constexpr char kDatabase[] = R"({"sizeKilobytes": 5000,
      "generate": {"documents": 10000, "textBytes": 40, "profileEvery": 500}})";
};

TEST_F(ExportLargeTest, AHundredPoisonedNotesCostThemselvesAndNoOther) {
  run_.AddDatabase(database_, kDatabase);
  run_.SetFaults(Faults());
  const ConsoleEnd end = Export({L"--json"});
  ASSERT_EQ(end.code, 3u) << EventsIn(end.output).back();

  const OutputTree expected = WithoutPoisoned(CleanTree(kDatabase));
  EXPECT_EQ(testing::DescribeDifferences(expected, NotesTree()), "");

  const Json account = Outcome().at("account");
  EXPECT_EQ(account.at("notes").at("exported"), kNotes - kPoisoned);
  const Json& losses = account.at("losses");
  ASSERT_EQ(losses.size(), static_cast<std::size_t>(kPoisoned));
  for (int i = 0; i < kPoisoned; ++i) {
    const Json& loss = losses[static_cast<std::size_t>(i)];
    EXPECT_EQ(loss.at("id"), NoteIdText(PoisonedNote(i)));
    EXPECT_EQ(loss.at("stage"), PoisonOf(i).stage);
    EXPECT_EQ(loss.at("kind"), PoisonOf(i).kind);
    EXPECT_NE(loss.at("cause"), "");
  }
  EXPECT_EQ(Outcome().at("restarts").size(), 20u);
  EXPECT_EQ(EventsOf(end.output, "lost").size(), static_cast<std::size_t>(kPoisoned));
}

}  // namespace
}  // namespace larkspan::console
