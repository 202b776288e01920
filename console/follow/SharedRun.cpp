// Step by step:
//   1. A first worker does what is done once for a database, and lists the notes. It is asked to
//   stop
//      where the list begins; notes that it exports all the same count.
//   2. The notes behind are cut into slices, and several workers at once export them.
//   3. The parts are joined, and the report is closed as after any run.
// Where step 1 does not give a whole list the run ends there, as it would with one worker.
#include "console/follow/SharedRun.h"

#include <algorithm>
#include <ctime>
#include <memory>
#include <utility>
#include <vector>

#include "console/folder/NoteList.h"
#include "console/folder/RunLogFile.h"
#include "console/follow/ExporterArguments.h"
#include "console/follow/ExporterProcess.h"
#include "console/follow/Host.h"
#include "console/follow/RetryCrew.h"
#include "console/follow/SliceCrew.h"
#include "console/follow/SupervisedWorkers.h"
#include "console/parts/JoinParts.h"
#include "console/text/Utf.h"
#include "report/AuditReport.h"
#include "supervision/AuditBlocks.h"

namespace larkspan::console {

namespace {

std::uint64_t CountErrors(const std::wstring& folder) {
  std::uint64_t count = 0;
  for (const RepeatedText& error : ReadRunLogFile(folder).errors) count += error.times;
  return count;
}

class SharedRun {
 public:
  SharedRun(ExportWork& work, RunFollower& follower, bool views)
      : work_(work),
        follower_(follower),
        views_(views),
        log_(work.folder(), work.request.debug ? LogLevel::kDebug : LogLevel::kWarning) {}

  bool Run() {
    WriteAuditBegin(started_, log_);
    if (work_.resumption && work_.resumption->first) {
      GoOn();
    } else if (const NoteList list = List(); !list.ids.empty()) {
      if (first_.noteId == 0) return BeginAnew();
      ExportSlices(list);
    }
    WriteAuditEnd(started_, log_);
    return true;
  }

 private:
  const std::wstring& folder() const { return work_.folder(); }

  void GoOn() {
    first_ = *work_.resumption->first;
    // In the log of the run itself, so that it is known whatever happens next.
    if (std::exchange(first_.noteIsLost, false)) LogLostNote(first_.noteId, log_);
    follower_.GoOnBehind(work_.resumption->done, work_.resumption->all, std::nullopt);
    const NoteList list = ReadNoteList(folder());
    if (first_.noteId >= list.ids.back()) {
      RunWorker(first_);
    } else {
      ExportSlices(list);
    }
  }

  bool BeginAnew() {
    PrepareResumption(folder(), {});
    return false;
  }

  // Empty when the run ended, or is done.
  NoteList List() {
    const std::uint64_t errors = CountErrors(folder());
    RunWorker({});
    if (work_.outcome().stop || CountErrors(folder()) != errors) return {};
    NoteList list = ReadNoteList(folder());
    if (list.ids.empty() || list.faultyLines > 0) return {};
    Outcome outcome = work_.outcome();
    outcome.progress.documents.reset();
    first_ = PlanResumption(folder(), outcome).first.value_or(FirstWorker{list.ids.front() - 1});
    return list;
  }

  // The first one, or one that only closes what is done.
  void RunWorker(FirstWorker first) {
    const std::wstring program = ExporterPath();
    SupervisedWorkers worker(program, ExporterArguments(work_.request, folder(), views_), true,
                             work_.around.password, log_, first, Supervision::kPart);
    follower_.FollowListing(worker);
    if (worker.startError() != 0)
      work_.facts.notStarted = NotStartedText(program, worker.startError());
  }

  void ExportSlices(const NoteList& list) {
    const auto behind = std::upper_bound(list.ids.begin(), list.ids.end(), first_.noteId);
    const auto before = static_cast<std::uint32_t>(behind - list.ids.begin());
    if (behind == list.ids.end()) return;
    const auto all = static_cast<std::uint32_t>(list.ids.size());
    auto crew = std::make_unique<SliceCrew>(work_, list.ids, first_);
    for (const std::wstring& done : crew->DoneFolders()) follower_.CountLostBefore(done);
    bool goesOn = true;
    if (std::vector<Part> cutOff = crew->CutOffParts(); cutOff.size() > 1) {
      RetryCrew retries(work_, std::move(cutOff));
      follower_.FollowCrew(retries, before + crew->done(), all);
      goesOn = retries.IsWhole();
      crew = std::make_unique<SliceCrew>(work_, list.ids, first_);
    }
    if (goesOn) follower_.FollowCrew(*crew, before + crew->done(), all);
    Join(*crew);
  }

  void Join(const SliceCrew& crew) {
    const int asked = work_.around.stops.Count();
    const std::vector<Part> parts = crew.LeadingParts();
    if (parts.empty()) return;
    const bool isWhole = crew.IsWhole();
    const std::string size = SizeAfterLine(parts.back().folder);
    // Looked at before the follower takes it: what breaks the joining off is known to have stopped
    // the run.
    const auto onPart = [&](std::uint64_t joined, std::uint64_t all) {
      const int count = work_.around.stops.Count();
      follower_.ShowJoining(joined, all);
      return count == asked;
    };
    const JoinResult result = JoinParts(folder(), parts, isWhole, onPart);
    if (result.isBrokenOff && result.blocked.empty()) return;
    if (!result.isDone) {
      const std::string fault =
          "Unable to join what several workers have exported: " + WideToUtf8(result.blocked);
      log_.Error(L"%s", Utf8ToWide(fault).c_str());
      follower_.TakeError(fault);
    } else if (isWhole) {
      AuditInFolder(folder(), L"%s\n", Utf8ToWide(size).c_str());
    }
  }

  ExportWork& work_;
  RunFollower& follower_;
  const bool views_;
  const RunLog log_;
  const std::time_t started_ = std::time(nullptr);
  FirstWorker first_;  // Behind what the output folder itself holds.
};

}  // namespace

bool RunShared(ExportWork& work, RunFollower& follower, bool views) {
  return SharedRun(work, follower, views).Run();
}

}  // namespace larkspan::console
