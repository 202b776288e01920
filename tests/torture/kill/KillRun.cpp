// The story of a run:
//   1. The program is started as a user would, and its output folder is watched for the moment.
//   2. The victims are ended. Whatever is under a final name then has to be whole.
//   3. Without its worker, the supervisor goes on by itself. Without its supervisor, a worker ends
//      by itself. Then, or when both are gone, the marker is taken away and a worker started by
//      hand with its note ID, as the supervisor would have done. Where no marker tells one, a new
//      run is started in the same folder.
//   4. The folder is checked, and that no process is left.
#include "tests/torture/kill/KillRun.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "tests/support/ExportRun.h"
#include "tests/support/FileBytes.h"
#include "tests/support/LogMessages.h"
#include "tests/torture/kill/ClosingCheck.h"
#include "tests/torture/kill/FinalFiles.h"
#include "tests/torture/kill/RunningExport.h"
#include "tests/torture/kill/Strike.h"
#include "tests/torture/kill/TreeCheck.h"

namespace larkspan::torture {

namespace {

using std::chrono::milliseconds;
using testing::ExportRun;

// A new run waits four seconds for each file that is there already.
constexpr milliseconds kLimit{120000};

constexpr wchar_t kData[] = L"" LARKSPAN_KILL_DATA_FOLDER;
constexpr wchar_t kDatabase[] = L"small.nsf";
const std::string kReadMarker = std::string("#DEBUG# - ") + message::kMarkerRead;
constexpr std::uint32_t kNone = 0xFFFFFFFF;

// The numbers of temporary folders are given by one thread at a time.
std::unique_ptr<ExportRun> NewExport() {
  static std::mutex oneAtATime;
  const std::lock_guard lock(oneAtATime);
  auto run = std::make_unique<ExportRun>();
  run->SetDataFolder(kData);
  return run;
}

class KillRun {
 public:
  KillRun(const CleanRun& clean, const Moment& moment)
      : clean_(clean),
        moment_(moment),
        export_(NewExport()),
        commandLine_(export_->CommandLine(kDatabase, {L"-archive", L"-debug"})) {}

  KillOutcome Go() {
    RunningExport running(export_->Executable(), commandLine_);
    outcome_.isKilled = StrikeAt(moment_, export_->output(), running);
    Find(CheckFinalFiles(clean_, ReadFinalFiles(export_->output())));
    if (outcome_.isKilled) KillWhatIsNext(running);
    AwaitEnd(running);
    if (!outcome_.isKilled || moment_.victim == Victim::kWorker) {
      CheckSupervised(running);
    } else {
      TakeUpAgain();
    }
    if (Exists(export_->folder() + L"\\misuse.txt")) Find({"the library was misused"});
    return outcome_;
  }

 private:
  void Find(const Lines& findings) {
    outcome_.findings.insert(outcome_.findings.end(), findings.begin(), findings.end());
  }

  OutputTree Tree() const { return export_->Tree(); }

  void KillWhatIsNext(RunningExport& running) {
    if (moment_.victim == Victim::kWorker) {
      nextDied_ = StrikeTheNextWorker(moment_, running);
      if (nextDied_) outcome_.remarks.emplace_back("the next worker died too");
    } else if (running.KillUnbornWorker()) {
      outcome_.remarks.emplace_back("a worker that was being made would have stayed");
    }
  }

  void AwaitEnd(const RunningExport& running) {
    if (!running.AwaitEndOfAll(kLimit)) Find({"a process is left"});
  }

  void CheckSupervised(const RunningExport& running) {
    if (running.ExitCode() != 0) Find({"the supervisor does not end with 0"});
    const OutputTree tree = Tree();
    NoteIds lost = NotesBehind(LinesOf(tree, "log.txt"), kReadMarker);
    std::erase(lost, kNone);
    const std::size_t deaths = (outcome_.isKilled ? 1U : 0U) + (nextDied_ ? 1U : 0U);
    if (lost.size() > deaths) Find({"more notes were lost than workers were ended"});
    if (lost.size() + CountEndsOutsideANote(tree) > deaths) {
      Find({"more ends are told than workers were ended"});
    }
    if (lost.size() == deaths && !IsFinished(tree)) Find({"the run does not go on"});
    Find(CheckResumed(clean_, tree, lost));
    Find(CheckLog(tree, lost));
    Find(CheckClosing(tree));
    outcome_.kind = !outcome_.isKilled ? "ended before the moment"
                    : lost.empty()     ? "worker died without a marker, the run ended"
                    : IsFinished(tree) ? "worker died, the rest was exported"
                                       : "worker died, a later one without a marker";
    if (tree.contains("temp.tmp")) outcome_.remarks.emplace_back("temp.tmp stayed");
  }

  void TakeUpAgain() {
    const OutputTree tree = Tree();
    Find(CheckFinalFiles(clean_, tree));
    if (tree.contains("temp.tmp")) outcome_.remarks.emplace_back("temp.tmp lay there");
    const std::uint32_t marker = Marker(tree);
    if (moment_.byNewRun || (marker == kNone && !IsFinished(tree))) return RunAnew(tree);
    outcome_.kind = marker == kNone ? "supervisor died, its worker finished"
                                    : "both died, a worker by hand went on";
    if (marker != kNone) GoOnByHand(marker);
    Find(CheckResumed(clean_, Tree(), marker == kNone ? NoteIds() : NoteIds{marker}));
    if (!IsFinished(Tree())) Find({"the worker does not come to the end of its list"});
    Find(CheckLog(Tree(), {}));
  }

  std::uint32_t Marker(const OutputTree& tree) {
    if (!tree.contains("marker.txt")) return kNone;
    const std::string text = tree.at("marker.txt");
    if (text.empty()) {
      outcome_.remarks.emplace_back("marker.txt was empty");
      return kNone;
    }
    const bool isWhole = text.size() == 10 && text.ends_with("\r\n") &&
                         text.find_first_not_of("0123456789ABCDEF") == 8;
    if (!isWhole) Find({"marker.txt holds " + text});
    return isWhole ? static_cast<std::uint32_t>(std::stoul(text, nullptr, 16)) : kNone;
  }

  void RunToEnd(const std::wstring& commandLine) {
    const RunningExport running(export_->Executable(), commandLine);
    AwaitEnd(running);
    if (running.ExitCode() != 0) Find({"the program that goes on does not end with 0"});
  }

  void GoOnByHand(std::uint32_t marker) {
    std::filesystem::remove(export_->output() + L"\\marker.txt");
    const std::string noteId = NoteIdText(marker);
    RunToEnd(commandLine_ + L" -l " + std::wstring(noteId.begin(), noteId.end()));
  }

  void RunAnew(const OutputTree& before) {
    outcome_.kind = "supervisor died, a new run went on";
    RunToEnd(commandLine_);
    const OutputTree tree = Tree();
    Find(CheckNewRun(clean_, before, tree));
    Find(CheckClosing(tree));
    if (CountMissing(tree) > 0) outcome_.remarks.emplace_back("a raw copy stayed missing");
  }

  std::size_t CountMissing(const OutputTree& tree) const {
    return static_cast<std::size_t>(
        std::count_if(clean_.tree.begin(), clean_.tree.end(), [&](const auto& entry) {
          return IsFinalName(entry.first) && !tree.contains(entry.first);
        }));
  }

  const CleanRun& clean_;
  const Moment moment_;
  const std::unique_ptr<ExportRun> export_;
  const std::wstring commandLine_;
  bool nextDied_ = false;
  KillOutcome outcome_;
};

}  // namespace

CleanRun RunClean() {
  const std::unique_ptr<ExportRun> undisturbed = NewExport();
  CleanRun clean;
  const auto start = std::chrono::steady_clock::now();
  const RunningExport running(undisturbed->Executable(),
                              undisturbed->CommandLine(kDatabase, {L"-archive", L"-debug"}));
  if (!running.AwaitEndOfAll(kLimit)) throw std::runtime_error("the clean run does not end");
  clean.duration =
      std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
  clean.tree = undisturbed->Tree();
  FindNotes(clean);
  if (!IsFinished(clean.tree) || !CheckClosing(clean.tree).empty() ||
      !CheckLog(clean.tree, {}).empty() || CountEndsOutsideANote(clean.tree) != 0) {
    throw std::runtime_error("the clean run is not clean");
  }
  return clean;
}

KillOutcome RunKilled(const CleanRun& clean, const Moment& moment) {
  return KillRun(clean, moment).Go();
}

}  // namespace larkspan::torture
