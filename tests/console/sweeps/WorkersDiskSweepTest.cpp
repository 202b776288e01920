// Several workers export onto a disk that refuses what a seed chooses: a worker's operation, or one
// of the console program itself, which makes the parts and joins them. (A disk that is truly full:
// check-full-disk-of-workers.)
#include <filesystem>
#include <string>

#include "tests/console/sweeps/Seeds.h"
#include "tests/console/system/WorkersTest.h"
#include "tests/faults/FileFaults.h"

namespace larkspan::console {
namespace {

using testing::OutputTree;

constexpr const wchar_t* kFileErrors[] = {L"diskFull", L"sharingViolation", L"accessDenied"};

class WorkersDiskSweepTest : public WorkersTest,
                             public ::testing::WithParamInterface<std::uint32_t> {
 protected:
  WorkersDiskSweepTest() { database_ = L"sample.nsf"; }

  // Both programs from a folder of their own; one of them has files that fail by the plan.
  void UsePrograms(const wchar_t* console, const wchar_t* exporter) {
    const std::filesystem::path from = testing::ProgramFolder();
    const std::filesystem::path to = run_.folder() + L"\\programs";
    std::filesystem::create_directory(to);
    std::filesystem::copy(from / console, to / L"larkspan-console.exe");
    std::filesystem::copy(from / exporter, to / L"larkspan.exe");
    std::filesystem::copy(from / L"nnotes.dll", to / L"nnotes.dll");
    programFolder_ = to.wstring();
  }
  void UseFaultyExporter() { UsePrograms(L"larkspan-console.exe", L"larkspan_faulty.exe"); }
  void UseFaultyConsole() { UsePrograms(L"larkspan_faulty_console.exe", L"larkspan.exe"); }

  static OutputTree CleanTreeOfSample() {
    testing::ExportRun clean;
    clean.Export(L"sample.nsf", {L"-archive"});
    return NotesTreeOf(clean.output());
  }

  std::wstring Error() { return std::wstring(L" ") + chance_.OneOf(kFileErrors); }

  // "7", "7-" or "7-9": so many calls in a row that a patient caller gets past them.
  std::wstring Calls(std::size_t most) {
    const std::size_t first = 1 + chance_.Below(most);
    static constexpr const wchar_t* kHowLong[] = {L"", L"-", L"-more"};
    const std::wstring howLong = chance_.OneOf(kHowLong);
    const std::wstring calls = L" " + std::to_wstring(first);
    return howLong == L"-more" ? calls + L"-" + std::to_wstring(first + 2) : calls + howLong;
  }

  ConsoleEnd ExportWith(const std::wstring& plan, const Words& more) const {
    const ScopedEnvironmentVariable variable(kFileFaultsVariable, plan);
    return Export(more);
  }

  // There is room again.
  void ExpectDoneWhenTakenUp(const OutputTree& clean) {
    const ConsoleEnd end = Export({L"--resume", L"--workers", L"2"});
    SCOPED_TRACE(end.output);
    EXPECT_TRUE(end.code == 0 || end.code == 3) << end.code;
    ExpectAccountedFor(clean, end.code);
    EXPECT_FALSE(HasParts());
  }

  Chance chance_{GetParam()};
};

// What is done once, and what the name of a note is struck by, is the same for one worker.
TEST_P(WorkersDiskSweepTest, FilesThatAreRefusedByNameCostWhatTheyCostOneWorker) {
  UseFaultyExporter();
  static constexpr const wchar_t* kOnce[] = {
      L"open acl.dxl",      L"write acl.dxl",     L"close db.dxl",
      L"write db.dxl",      L"open 00000132.xml", L"write 00000156.xml",
      L"close idtable.txt", L"write idtable.txt", L"open idtable.txt"};
  static constexpr const wchar_t* kNotes[] = {L"move 00000136.dxl", L"move 00000902.dxl",
                                              L"move 0000092E.dxl", L"move 0000096A.dxl"};
  std::wstring plan = std::wstring(chance_.OneOf(kOnce)) + L" *" + Error();
  // The final name of a note is tried for four seconds.
  if (chance_.Below(3) == 0) plan = std::wstring(chance_.OneOf(kNotes)) + L" *" + Error();
  SCOPED_TRACE(std::string(plan.begin(), plan.end()));
  const ConsoleEnd end = ExportWith(plan, {L"--workers", L"3"});
  const ScopedEnvironmentVariable variable(kFileFaultsVariable, plan);
  ExpectLikeAlone(end);
}

TEST_P(WorkersDiskSweepTest, AWorkersDiskThatIsFullLosesNothingThatIsNotTold) {
  UseFaultyExporter();
  static constexpr const wchar_t* kFiles[] = {L"temp.tmp",    L"unidindex.txt", L"marker.txt",
                                              L"idtable.txt", L"log.txt",       L"*"};
  static constexpr const wchar_t* kOperations[] = {L"open ", L"write ", L"close "};
  const std::wstring plan =
      chance_.OneOf(kOperations) + std::wstring(chance_.OneOf(kFiles)) + Calls(12) + L" diskFull";
  SCOPED_TRACE(std::string(plan.begin(), plan.end()));
  const OutputTree clean = CleanTreeOfSample();
  const ConsoleEnd end = ExportWith(plan, {L"--workers", L"3"});
  SCOPED_TRACE(end.output);
  ExpectAccountedFor(clean, end.code);
  if (end.code != 0 && end.code != 3) ExpectDoneWhenTakenUp(clean);
}

// What the console program does with files from the first part on.
std::wstring OperationOnParts(Chance& chance) {
  static constexpr const wchar_t* kOperations[] = {L"folder parts",
                                                   L"folder data",
                                                   L"folder joining",
                                                   L"open idtable.txt.new",
                                                   L"move idtable.txt",
                                                   L"write log.txt",
                                                   L"write unidindex.txt",
                                                   L"close log.txt",
                                                   L"open log.txt",
                                                   L"write unidindex.txt",
                                                   L"move unidindex.txt",
                                                   L"write idtable.txt.new",
                                                   L"move joined",
                                                   L"move 00000902.dxl",
                                                   L"delete audit.txt",
                                                   L"move *",
                                                   L"write *",
                                                   L"folder *"};
  return chance.OneOf(kOperations);
}

TEST_P(WorkersDiskSweepTest, WhatCannotBeJoinedStaysAndIsJoinedLater) {
  UseFaultyConsole();
  const std::wstring operation = OperationOnParts(chance_);
  const bool isAny = operation.ends_with(L"*");
  const std::wstring plan = operation + Calls(isAny ? 40 : 2) + Error();
  SCOPED_TRACE(std::string(plan.begin(), plan.end()));
  const OutputTree clean = CleanTreeOfSample();
  const ConsoleEnd end = ExportWith(plan, {L"--workers", L"3"});
  SCOPED_TRACE(end.output);
  EXPECT_TRUE(end.code == 0 || end.code == 2 || end.code == 5) << end.code;
  ExpectAccountedFor(clean, end.code);
  if (end.code != 0) ExpectDoneWhenTakenUp(clean);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkersDiskSweepTest, ::testing::ValuesIn(SweepSeeds(10)),
                         kSeedName);

}  // namespace
}  // namespace larkspan::console
