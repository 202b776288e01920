// Several workers crash at calls of the library that a seed chooses. By note: then what they leave
// is what one worker leaves. By the number of the call: then each worker meets it at another note
// than one alone would, but nothing is lost without being told.
#include <cstdint>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/console/sweeps/Seeds.h"
#include "tests/console/system/WorkersTest.h"
#include "tests/support/RunTexts.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::NoteIdText;
using testing::OutputTree;

// A database, some of whose notes have these IDs, each four greater than the one before it.
struct CrashSubject {
  const wchar_t* database;
  std::uint32_t firstNote;
  std::size_t notes;
};

constexpr wchar_t kOwnDatabase[] = L"x.nsf";
constexpr std::size_t kOwnNotes = 60;

constexpr CrashSubject kCrashSubjects[] = {
    {kOwnDatabase, 0x902, kOwnNotes}, {L"sample.nsf", 0x11A, 24}, {L"sample.nsf", 0x8FA, 31},
    {L"damaged.nsf", 0x1202, 16},     {L"sealed.nsf", 0x902, 4},
};

// Those that are called for a note.
constexpr const char* kEntriesOfNotes[] = {
    "NSFNoteOpen",    "NSFNoteGetInfo", "NSFNoteIsSignedOrSealed", "NSFItemInfo", "NSFItemScan",
    "NSFItemGetText", "DXLExportNote",  "DXLExportNote",           "NSFNoteClose"};

// How a process ends; what a fault of the plan says of it.
const std::vector<Json> kEndings = {
    {{"action", "accessViolation"}},   {{"action", "stackOverflow"}}, {{"action", "exit"}},
    {{"action", "exit"}, {"code", 0}}, {{"action", "abort"}},         {{"action", "throw"}},
    {{"action", "exception"}}};

class WorkersCrashSweepTest : public WorkersTest,
                              public ::testing::WithParamInterface<std::uint32_t> {
 protected:
  void Use(const CrashSubject& subject) {
    database_ = subject.database;
    if (database_ == kOwnDatabase) run_.AddDatabase(database_, DocumentsJson(kOwnNotes));
  }

  void SetPlan(const Json& plan) {
    plan_ = plan.dump();
    run_.SetFaults(plan_);
  }

  OutputTree CleanTreeOfSubject() const {
    testing::ExportRun clean;
    if (database_ == kOwnDatabase) clean.AddDatabase(database_, DocumentsJson(kOwnNotes));
    clean.Export(database_, {L"-archive"});
    return NotesTreeOf(clean.output());
  }

  Chance chance_{GetParam()};
  std::string plan_;
};

TEST_P(WorkersCrashSweepTest, AtNotesTheyCostWhatTheyCostOneWorker) {
  const CrashSubject& subject = chance_.OneOf(kCrashSubjects);
  Use(subject);
  Json plan = Json::array();
  for (std::size_t faults = 1 + chance_.Below(4); faults > 0; --faults) {
    Json fault = chance_.OneOf(kEndings);
    fault["entry"] = chance_.OneOf(kEntriesOfNotes);
    const auto number = static_cast<std::uint32_t>(chance_.Below(subject.notes));
    fault["note"] = NoteIdText(subject.firstNote + 4 * number);
    if (chance_.Below(3) == 0) fault["call"] = 1 + chance_.Below(3);
    if (fault["entry"] == "DXLExportNote" && chance_.Below(2) == 0) fault["chunks"] = 1;
    plan.push_back(fault);
  }
  SetPlan(plan);
  SCOPED_TRACE(plan_);
  const ConsoleEnd end = Export({L"--workers", L"3"});
  ExpectLikeAlone(end);
}

// Every process counts its own calls, so the last ones are not reached by the worker of a slice.
const std::map<std::string, std::size_t> kCallsOfAWorker = {
    {"NotesInitExtended", 1}, {"NSFDbOpen", 2},       {"DXLCreateExporter", 5},
    {"NSFNoteOpen", 20},      {"NSFNoteGetInfo", 20}, {"DXLExportNote", 20},
    {"NSFNoteClose", 20},     {"NSFItemInfo", 30},    {"NSFSearchExtended3", 1},
    {"NSFDbClose", 1},        {"NotesTerm", 1},       {"NIFReadEntries", 9}};

TEST_P(WorkersCrashSweepTest, ByTheNumberOfTheCallTheyLoseNothingThatIsNotTold) {
  Use(kCrashSubjects[chance_.Below(2)]);
  auto entry = kCallsOfAWorker.begin();
  std::advance(entry, chance_.Below(kCallsOfAWorker.size()));
  Json fault = chance_.OneOf(kEndings);
  fault["entry"] = entry->first;
  fault["call"] = 1 + chance_.Below(entry->second);
  SetPlan(Json::array({fault}));
  SCOPED_TRACE(plan_);
  const OutputTree clean = CleanTreeOfSubject();
  const ConsoleEnd end = Export({L"--workers", L"3"});
  SCOPED_TRACE(end.output);
  ExpectAccountedFor(clean, end.code);
  if (end.code == 0 || end.code == 3) return;
  run_.ChangeFaults("[]");
  const ConsoleEnd last = Export({L"--resume", L"--workers", L"2"});
  EXPECT_TRUE(last.code == 0 || last.code == 3) << last.code << last.output;
  ExpectAccountedFor(clean, last.code);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkersCrashSweepTest, ::testing::ValuesIn(SweepSeeds(6)),
                         kSeedName);

}  // namespace
}  // namespace larkspan::console
