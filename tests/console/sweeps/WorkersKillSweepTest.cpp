// An export by several workers is ended by force at moments that a seed chooses, and taken up again
// until it is done.
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/console/sweeps/Seeds.h"
#include "tests/console/system/WorkersTest.h"
#include "tests/support/RunTexts.h"

namespace larkspan::console {
namespace {

using testing::DescribeDifferences;
using testing::OutputTree;
using testing::UniqueSystemHandle;

// Each note takes a while, so that the moments differ.
constexpr char kSlowNotes[] = R"({"entry": "NSFNoteOpen", "wait": 60})";
constexpr wchar_t kSample[] = L"sample.nsf";

// While it is held, nobody can delete it or give it another name.
UniqueSystemHandle HoldUnderItsName(const std::wstring& path) {
  const HANDLE handle = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  return UniqueSystemHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

// What lies in the output folder while workers work there, as far as it can be seen.
class SeenFolder {
 public:
  explicit SeenFolder(const std::wstring& folder) {
    std::error_code error;
    std::filesystem::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::recursive_directory_iterator();
         entry.increment(error))
      paths_.push_back(entry->path());
  }

  std::vector<std::filesystem::path> FilesOfNotes() const {
    return Those([](const auto& path) {
      const std::wstring folder = path.parent_path().filename().native();
      return path.extension() == L".dxl" &&
             (folder == L"data" || folder == L"profile" || folder == L"design2");
    });
  }

  std::vector<std::filesystem::path> Parts() const {
    return Those([](const auto& path) { return path.parent_path().filename() == L"parts"; });
  }

  std::vector<std::filesystem::path> Markers() const {
    return Those([](const auto& path) { return path.filename() == L"marker.txt"; });
  }

 private:
  template <typename Condition>
  std::vector<std::filesystem::path> Those(Condition condition) const {
    std::vector<std::filesystem::path> some;
    std::copy_if(paths_.begin(), paths_.end(), std::back_inserter(some), condition);
    return some;
  }

  std::vector<std::filesystem::path> paths_;
};

class WorkersKillSweepTest : public WorkersTest,
                             public ::testing::WithParamInterface<std::uint32_t> {
 protected:
  WorkersKillSweepTest() {
    database_ = kSample;
    run_.SetFaults(std::string("[") + kSlowNotes + "]");
  }

  static OutputTree CleanTreeOfSample() {
    testing::ExportRun clean;
    clean.Export(kSample, {L"-archive"});
    return NotesTreeOf(clean.output());
  }

  // Starts an export, or takes it up, and ends it at a moment. False when it came to its end first.
  bool RunUntilKilled(const Words& words) {
    const auto process = StartExport(words);
    AwaitMoment(*process);
    Sleep(static_cast<DWORD>(chance_.Below(60)));
    const bool isRunning = IsRunning(*process);
    process->EndByForce();
    held_.reset();
    process->AwaitNothingLeft();
    return isRunning;
  }

  static bool IsRunning(const ConsoleProcess& process) {
    const std::vector<DWORD> processes = process.Processes();
    return std::find(processes.begin(), processes.end(), process.processId()) != processes.end();
  }

  // Or the end of the run, which may come first.
  void AwaitInFolder(const ConsoleProcess& process, const std::function<bool()>& condition) {
    EXPECT_TRUE(AwaitCondition([&] { return condition() || !IsRunning(process); }));
  }

  void AwaitMoment(const ConsoleProcess& process) {
    switch (chance_.Below(6)) {
      case 0:
        return AwaitListing(process);
      case 1:
      case 2:
        return AwaitNotes(process, 1 + chance_.Below(45));
      case 3:
        return AwaitInFolder(process, [&, count = 1 + chance_.Below(6)] {
          return SeenFolder(out_).Parts().size() >= count;
        });
      default:
        return AwaitJoining(process);
    }
  }

  void AwaitListing(const ConsoleProcess& process) {
    AwaitInFolder(process, [&] { return Exists(out_ + L"\\outcome.json"); });
    Sleep(static_cast<DWORD>(chance_.Below(900)));
  }

  void AwaitNotes(const ConsoleProcess& process, std::size_t count) {
    AwaitInFolder(process, [&] { return SeenFolder(out_).FilesOfNotes().size() >= count; });
  }

  // Something that is to be moved is held, so that the joining waits for it.
  void AwaitJoining(const ConsoleProcess& process) {
    AwaitNotes(process, 5 + chance_.Below(35));
    const SeenFolder seen(out_);
    const std::vector<std::filesystem::path> notes = seen.FilesOfNotes();
    const std::vector<std::filesystem::path> parts = seen.Parts();
    const std::size_t kind = chance_.Below(4);
    std::wstring path = out_ + L"\\unidindex.txt";
    if (kind == 0 && !parts.empty()) path = chance_.OneOf(parts).native();
    if (kind == 1) path = out_ + L"\\parts";
    if (kind == 2 && !notes.empty()) path = notes[notes.size() - 1 - chance_.Below(3)].native();
    held_ = HoldUnderItsName(path);
    AwaitInFolder(process,
                  [&] { return Exists(out_ + L"\\joining") || Exists(out_ + L"\\joined"); });
    if (chance_.Below(2) == 0) AwaitInFolder(process, [&] { return !Exists(out_ + L"\\joining"); });
  }

  Words WordsToGoOn() {
    static constexpr const wchar_t* kWorkers[] = {L"", L"2", L"3", L"5"};
    const std::wstring workers = chance_.OneOf(kWorkers);
    return workers.empty() ? Words{L"--resume"} : Words{L"--resume", L"--workers", workers};
  }

  // The folder of a run that was cut off passes for whole only where it is. What is done by now
  // cannot be done again.
  void LookAtWhatIsLeft(const OutputTree& clean) {
    if (!Exists(out_ + L"\\idtable.txt")) return;
    const std::uint32_t code = VerifyCode();
    const bool isJoined =
        !HasParts() && !Exists(out_ + L"\\joining") && !Exists(out_ + L"\\joined");
    EXPECT_TRUE(code == 5u || (isJoined && code == 0u)) << code;
    const SeenFolder seen(out_);
    for (const std::filesystem::path& marker : seen.Markers())
      ++cutOff_[ReadBytes(marker.native()).substr(0, 8)];
    ExpectNothingIsGone(seen);
    if (code == 0u) {
      EXPECT_EQ(DescribeDifferences(clean, NotesTree()), "");
    }
    FailAt({done_.begin(), done_.end()}, kSlowNotes);
  }

  void ExpectNothingIsGone(const SeenFolder& seen) {
    std::set<std::wstring> now;
    for (const std::filesystem::path& file : seen.FilesOfNotes()) now.insert(file.stem().native());
    EXPECT_TRUE(std::includes(now.begin(), now.end(), done_.begin(), done_.end()));
    done_ = std::move(now);
  }

  // A note at which the run was cut off twice may be lost, and no other.
  void ExpectLostOnlyWhereCutOffTwice(std::uint32_t code) const {
    const std::set<std::string> lost = ToldAsLost();
    EXPECT_EQ(code, lost.empty() ? 0u : 3u);
    for (const std::string& note : lost)
      EXPECT_TRUE(cutOff_.contains(note) && cutOff_.at(note) > 1) << note;
  }

  Chance chance_{GetParam()};
  std::optional<UniqueSystemHandle> held_;
  std::map<std::string, int> cutOff_;  // How often a run was cut off at a note.
  std::set<std::wstring> done_;        // The notes that need not be exported again.
};

TEST_P(WorkersKillSweepTest, TakenUpAgainTheExportIsThatOfOneWorker) {
  const OutputTree clean = CleanTreeOfSample();
  Words words = {L"--workers", L"3"};
  for (std::size_t kills = 1 + chance_.Below(3); kills > 0; --kills) {
    if (!RunUntilKilled(words)) break;
    LookAtWhatIsLeft(clean);
    words = WordsToGoOn();
  }
  const ConsoleEnd end = Export(words.front() == L"--resume" ? words : Words{L"--resume"});
  SCOPED_TRACE(end.output);
  ExpectLostOnlyWhereCutOffTwice(end.code);
  ExpectAccountedFor(clean, end.code);
  EXPECT_FALSE(HasParts());
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkersKillSweepTest, ::testing::ValuesIn(SweepSeeds(8)),
                         kSeedName);

// One of the workers is ended, and not the console program. They hang at their notes, so that each
// process that is there has begun.
class WorkerKillSweepTest : public WorkersTest,
                            public ::testing::WithParamInterface<std::uint32_t> {
 protected:
  static std::string NoteOf(std::size_t number) {
    return testing::NoteIdText(0x902 + 4 * static_cast<std::uint32_t>(number));
  }

  // One in each third of the notes, further from each other than a slice is long, so that three
  // workers come to them.
  void ChooseNotes() {
    for (std::size_t third = 0; third < 3; ++third)
      notes_.push_back(NoteOf(20 * third + 1 + chance_.Below(8)));
  }

  std::string PlanWith(const std::string& action) const {
    std::string plan;
    for (const std::string& note : notes_)
      plan += (plan.empty() ? "[" : ", ") +
              (R"({"entry": "DXLExportNote", "note": ")" + note + R"(", "action": ")") + action +
              R"("})";
    return plan + "]";
  }

  // Its line is written when it is open; a worker that hangs in it writes no other.
  std::size_t CountHanging() const {
    std::size_t count = 0;
    for (const std::filesystem::path& part : SeenFolder(out_).Parts()) {
      const std::wstring index = part.native() + L"\\unidindex.txt";
      if (!Exists(index)) continue;
      const std::string text = ReadBytes(index);
      count += std::count_if(notes_.begin(), notes_.end(),
                             [&](const std::string& note) { return Holds(text, note + ","); });
    }
    return count;
  }

  static void EndWorker(DWORD id, UINT code) {
    const UniqueSystemHandle worker(OpenProcess(PROCESS_TERMINATE, FALSE, id));
    EXPECT_TRUE(TerminateProcess(worker.get(), code));
  }

  Chance chance_{GetParam()};
  std::vector<std::string> notes_;
};

TEST_P(WorkerKillSweepTest, AWorkerThatIsEndedCostsItsNoteAlone) {
  // The worker that lists waits there, so that it is stopped before it hangs at a note.
  const std::string slowList = R"({"entry": "NSFSearchExtended3", "wait": 3000})";
  run_.AddDatabase(database_, testing::DocumentsJson(60, testing::FaultsMember(slowList)));
  ChooseNotes();
  run_.SetFaults(PlanWith("hang"));
  const auto process = StartExport({L"--workers", L"3"});
  EXPECT_TRUE(AwaitCondition([&] { return CountHanging() == 3; }));
  std::vector<DWORD> workers = process->Processes();
  std::erase(workers, process->processId());
  EXPECT_EQ(workers.size(), 3u);
  static constexpr UINT kCodes[] = {0, 1, 3, 0xC0000005, 0xDEAD};
  while (!workers.empty()) {
    const std::size_t chosen = chance_.Below(workers.size());
    EndWorker(workers[chosen], chance_.OneOf(kCodes));
    workers.erase(workers.begin() + static_cast<std::ptrdiff_t>(chosen));
    Sleep(static_cast<DWORD>(chance_.Below(300)));
  }
  const ConsoleEnd end = process->WaitForEnd();
  process->AwaitNothingLeft();
  EXPECT_EQ(end.code, 3u) << end.output;
  run_.ChangeFaults(PlanWith("accessViolation"));
  ExpectLikeAlone(end);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WorkerKillSweepTest, ::testing::ValuesIn(SweepSeeds(3)), kSeedName);

}  // namespace
}  // namespace larkspan::console
