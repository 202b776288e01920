// One round of the loop:
//   1. Wait for the exporter's end, a line, a request to stop, or a tenth of a second.
//   2. Take what has come: progress lines, and the lines that were added to the log. The log has a
//      note's line before the next note's progress line comes, so nothing is missed by who looks at
//      the logs of those alone that have said something; at the others' he looks once a second.
//   3. Once a second look at what no line tells: temp.tmp, the room on the disk, and in the plain
//      form, which has no progress lines, the files themselves.
//   4. Pass on a request to stop, and end what did not heed an earlier one.
//   5. Show what has changed, and once a minute write it into outcome.json.
// What came before the end is taken after it, so that nothing of a run goes unseen.
#include "console/follow/RunFollower.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/folder/NoteFiles.h"
#include "console/folder/NoteList.h"
#include "console/follow/Host.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr DWORD kRoundMilliseconds = 100;
constexpr std::uint64_t kDiskPeriod = 1000;
constexpr std::uint64_t kSilenceToTell = 600'000;
constexpr std::chrono::milliseconds kLastLines{10'000};
constexpr std::string_view kMajor = "#WARNING# - Major: ";

// The size in "Database size before archive: 2097152".
std::optional<std::uint64_t> DatabaseSize(std::string_view line) {
  constexpr std::string_view kLabel = "Database size before archive: ";
  if (!line.starts_with(kLabel)) return std::nullopt;
  line.remove_prefix(kLabel.size());
  std::uint64_t size = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), size);
  if (error != std::errc()) return std::nullopt;
  return size;
}

// The message without its ID.
std::string CauseOf(const NoteLine& line) {
  if (line.fault == NoteFault::kDeath) return "a worker died at it";
  if (line.fault == NoteFault::kPictures) return "damaged; exported without its pictures";
  return line.cause;
}

}  // namespace

RunFollower::RunFollower(const FollowOptions& options, OutcomeKeeper& keeper, RunDisplay& display,
                         LossTeller& losses, StopRequests& stops)
    : options_(options),
      keeper_(keeper),
      display_(display),
      losses_(losses),
      stops_(stops),
      begun_(Now()),
      log_(output::Join(keeper.folder(), output::kLog)),
      audit_(output::Join(keeper.folder(), output::kAudit)) {
  view_.server = keeper.outcome().server;
  view_.path = keeper.outcome().path;
}

RunFollower::Followed::Followed(Exporter& itsExporter, std::wstring itsFolder, std::uint64_t now)
    : exporter(itsExporter),
      folder(std::move(itsFolder)),
      lines(exporter.TakeOutput()),
      ownLog(output::Join(folder, output::kLog)),
      stall(now) {}

std::uint64_t RunFollower::ElapsedMilliseconds() const { return Now() - begun_; }

void RunFollower::GoOnBehind(std::uint32_t done, std::uint32_t all,
                             std::optional<std::uint32_t> lost) {
  begin_.GoOnBehind(done, all);
  lostBefore_ = lost;
  CountLostIn(log_);
}

void RunFollower::CountLostBefore(const std::wstring& folder) {
  FileTail log(output::Join(folder, output::kLog));
  CountLostIn(log);
}

void RunFollower::CountLostIn(FileTail& log) {
  for (const std::string& line : log.ReadNewLines()) {
    if (!line.starts_with(kMajor)) continue;
    const std::optional<NoteLine> note =
        ParseNoteMessage(std::string_view(line).substr(kWarningLevel.size()));
    if (note && told_.emplace(note->fault, note->id).second) ++view_.lost;
  }
}

void RunFollower::GoOnWithoutViews() {
  view_.withoutViews = true;
  ++view_.restarts;
}

void RunFollower::Follow(Exporter& exporter) {
  onlyList_ = false;
  FollowAlone(exporter);
}

void RunFollower::FollowListing(Exporter& exporter) {
  onlyList_ = true;
  FollowAlone(exporter);
}

void RunFollower::FollowAlone(Exporter& exporter) {
  state_ = begin_;
  hungAmongViews_ = false;
  Followed& followed = followed_.emplace_back(exporter, keeper_.folder(), Now());
  followed.log = &log_;
  followed.lostBefore = lostBefore_;
  for (bool came = SomethingCame(); !HasEnded(exporter); came = SomethingCame()) TakeRound(came);
  if (stops_.Count() > 0) Stop(stops_.FirstReason());
  TakeLast(followed);
  followed_.clear();
  LookAtPlainFolder();
  state_.TakeEnd();
  Show();
}

void RunFollower::FollowCrew(Crew& crew, std::uint32_t done, std::uint32_t all) {
  onlyList_ = false;
  crewEnds_ = false;
  state_.GoOnBehind(done, all);
  std::list<CrewMember> members;
  for (BeginMembers(crew, members); !members.empty(); BeginMembers(crew, members)) {
    TakeRound(SomethingCame());
    EndMembers(crew, members);
  }
  if (const std::string fault = crew.fault(); !fault.empty()) TakeError(fault);
  if (stops_.Count() > 0) Stop(stops_.FirstReason());
  TakeAudit();
  state_.TakeEnd();
  Show();
}

void RunFollower::BeginMembers(Crew& crew, std::list<CrewMember>& members) {
  while (!stopAsked_ && !crewEnds_ && members.size() < crew.size()) {
    std::optional<CrewMember> member = crew.BeginNext();
    if (!member) return;
    members.push_back(std::move(*member));
    const CrewMember& begun = members.back();
    Followed& followed = followed_.emplace_back(*begun.exporter, begun.folder, Now());
    followed.worker = FreeNumber();
    followed.lostBefore = begun.lostBefore;
    followed.onlyOneNote = begun.onlyOneNote;
    CountLostIn(followed.ownLog);
  }
}

// Those that are at work have the smallest numbers that were free when they began.
std::uint32_t RunFollower::FreeNumber() const {
  std::uint32_t number = 1;
  const auto hasIt = [&](const Followed& followed) { return followed.worker == number; };
  while (std::any_of(followed_.begin(), followed_.end(), hasIt)) ++number;
  return number;
}

void RunFollower::EndMembers(Crew& crew, std::list<CrewMember>& members) {
  auto followed = followed_.begin();
  for (auto member = members.begin(); member != members.end();) {
    if (!HasEnded(*member->exporter)) {
      ++member, ++followed;
      continue;
    }
    TakeLast(*followed);
    followed = followed_.erase(followed);
    if (!crew.IsDone(*member)) EndCrewBehind(followed);
    member = members.erase(member);
  }
}

// One worker alone would have ended here, with all before this done.
void RunFollower::EndCrewBehind(std::list<Followed>::iterator first) {
  crewEnds_ = true;
  for (auto followed = first; followed != followed_.end(); ++followed) followed->isToStop = true;
}

bool RunFollower::HasEnded(const Exporter& exporter) {
  return WaitForSingleObject(exporter.ended(), 0) == WAIT_OBJECT_0;
}

bool RunFollower::SomethingCame() {
  std::vector<HANDLE> handles = {stops_.event()};
  for (const Followed& followed : followed_)
    handles.insert(handles.end(), {followed.exporter.ended(), followed.lines.event()});
  const DWORD came = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(),
                                            FALSE, kRoundMilliseconds);
  return came != WAIT_TIMEOUT;
}

void RunFollower::TakeRound(bool somethingCame) {
  const bool looksAtDisk = Now() - lookedAtDisk_ >= kDiskPeriod;
  for (Followed& followed : followed_) {
    if (TakeLines(followed) || looksAtDisk || !somethingCame) TakeLog(followed);
  }
  if (looksAtDisk) {
    lookedAtDisk_ = Now();
    TakeAudit();
    LookAtPlainFolder();
    LookAtSpace();
    for (Followed& followed : followed_)
      followed.stall.Look(TemporaryFileMark(followed.folder), Now());
  }
  TakeStops();
  LookForStalls();
  Show();
}

void RunFollower::TakeLast(Followed& followed) {
  // A worker whose supervisor was ended from outside would go on by itself.
  followed.exporter.EndAll();
  followed.lines.AwaitEnd(kLastLines);
  TakeLines(followed);
  TakeLog(followed);
  TakeAudit();
}

bool RunFollower::TakeLines(Followed& followed) {
  const std::vector<std::string> lines = followed.lines.Take();
  for (const std::string& line : lines) TakeProgressLine(followed, line);
  return !lines.empty();
}

void RunFollower::TakeProgressLine(Followed& followed, std::string_view line) {
  const std::optional<ProgressLine> progress = ParseProgressLine(line);
  if (!progress) return;
  followed.stall.Progress(Now());
  if (progress->kind == ProgressLine::Kind::kDocument) {
    if (followed.onlyOneNote && followed.note) followed.isToStop = true;
    followed.note = progress->number;
  }
  // The list is written next; what is exported before this comes through counts as well.
  if (onlyList_ && progress->kind == ProgressLine::Kind::kScanning) followed.exporter.AskToStop();
  if (state_.Take(*progress) == RunState::Step::kNewPhase) Show();
}

void RunFollower::TakeLog(Followed& followed) {
  for (const std::string& line : followed.log->ReadNewLines()) TakeLogLine(followed, line);
}

void RunFollower::TakeLogLine(Followed& followed, std::string_view line) {
  if (line.starts_with(kWarningLevel)) {
    const std::optional<NoteLine> note = ParseNoteMessage(line.substr(kWarningLevel.size()));
    if (note) TakeLoss(followed, *note);
  } else if (line.starts_with(kErrorLevel)) {
    TakeError(std::string(line.substr(kErrorLevel.size())));
  }
}

void RunFollower::TakeError(const std::string& message) {
  lastError_ = message;
  display_.Warn({"error-line", message});
}

void RunFollower::TakeLoss(Followed& followed, const NoteLine& line) {
  // A worker that cannot start has the same line written again and again.
  if (!told_.emplace(line.fault, line.id).second) return;
  state_.TakeLostNote();
  Loss loss{LossKind::kNote, line.id, StageOf(line.fault), CauseOf(line)};
  if (line.fault == NoteFault::kDeath && followed.lostBefore != line.id)
    loss.stage = TakeRestart(followed, line.id);
  if (line.fault == NoteFault::kPictures) loss.kind = LossKind::kPictures;
  // A worker can die late. What becomes of its raw copy then is told when all is checked.
  if (line.fault == NoteFault::kDeath && HasAnyFile(followed, line.id)) return;
  if (line.fault == NoteFault::kExport && HasFile(followed, output::kDesignFolder, line.id)) {
    loss.kind = LossKind::kRawCopy;
    loss.stage = "raw copy";
  }
  losses_.Tell(loss, followed.worker);
  if (loss.kind == LossKind::kNote) CountLostNote(loss);
}

std::string RunFollower::TakeRestart(Followed& followed, std::uint32_t note) {
  const std::string cause = std::exchange(followed.endedForStall, false) ? "stall" : "crash";
  keeper_.outcome().restarts.push_back({UtcNow(), note, cause});
  ++view_.restarts;
  display_.Restart({note, cause, followed.worker});
  followed.stall.Progress(Now());
  return cause;
}

bool RunFollower::HasFile(const Followed& followed, std::wstring_view subfolder,
                          std::uint32_t note) const {
  return FileExists(output::Join(followed.folder, output::NoteFile(subfolder, note)));
}

bool RunFollower::HasAnyFile(const Followed& followed, std::uint32_t note) const {
  if (!options_.archive) return HasFile(followed, {}, note);
  return HasNoteFile(followed.folder, note);
}

void RunFollower::CountLostNote(const Loss& loss) {
  ++view_.lost;
  if (!options_.giveUp) return;
  if (!giveUp_) giveUp_.emplace(ReadNoteList(keeper_.folder()).ids);
  if (giveUp_->Lose(*loss.id, loss.stage + loss.cause) >= *options_.giveUp) Stop("give-up");
}

void RunFollower::TakeAudit() {
  for (const std::string& line : audit_.ReadNewLines()) {
    if (const std::optional<std::uint64_t> size = DatabaseSize(line)) databaseSize_ = size;
  }
}

void RunFollower::LookAtPlainFolder() {
  if (options_.archive) return;
  const NoteList list = ReadNoteList(keeper_.folder());
  if (list.reading != FileReading::kRead) return;
  const bool isNew = state_.TakeFiles(list.ids.size(), CountPlainNotes(keeper_.folder()));
  if (isNew && !followed_.empty()) followed_.front().stall.Progress(Now());
}

void RunFollower::LookAtSpace() {
  const std::optional<std::uint64_t> free = FreeBytes(keeper_.folder());
  if (!free) return;
  switch (space_.Look(*free, databaseSize_)) {
    case SpaceWatch::Verdict::kEnough:
      break;
    case SpaceWatch::Verdict::kLessThanDatabase: {
      const Warning warning{"space", "there are " + std::to_string(*free) +
                                         " bytes free, and the database has " +
                                         std::to_string(*databaseSize_)};
      keeper_.outcome().warnings.push_back(warning);
      display_.Warn(warning);
      break;
    }
    case SpaceWatch::Verdict::kTooLittle:
      Stop("disk");
      break;
  }
}

void RunFollower::LookForStalls() {
  ShowSilence();
  if (!options_.stallMilliseconds) return;
  for (Followed& followed : followed_) {
    if (followed.stall.Silence(Now()) >= *options_.stallMilliseconds) EndHungWorker(followed);
  }
}

// As long as one goes on, the run does.
void RunFollower::ShowSilence() {
  const auto bySilence = [](const Followed& left, const Followed& right) {
    return left.stall.last() > right.stall.last();
  };
  const auto least = std::min_element(followed_.begin(), followed_.end(), bySilence);
  if (least == followed_.end()) return;
  const std::uint64_t silence = least->stall.Silence(Now());
  if (silence < kSilenceToTell) {
    view_.silence.reset();
  } else if (!view_.silence) {
    view_.silence = Silence{LocalClockBefore(silence), least->note};
  }
}

bool RunFollower::IsAmongNotes(const Followed& followed) const {
  return followed.worker ? followed.note.has_value() : state_.phase() == Phase::kDocuments;
}

void RunFollower::EndHungWorker(Followed& followed) {
  followed.stall.Progress(Now());
  if (!followed.exporter.EndWorker()) return;
  followed.endedForStall = true;
  if (!followed.worker && state_.phase() == Phase::kViews) {
    hungAmongViews_ = true;
  } else if (!IsAmongNotes(followed) && options_.archive && !stopAsked_) {
    stopAsked_ = true;
    keeper_.outcome().stop = larkspan::console::Stop{UtcNow(), "stall"};
    display_.Stop("stall");
  }
}

void RunFollower::TakeStops() {
  if (options_.stopOnBrokenOutput && display_.OutputBroken()) stops_.AskOnce("output");
  if (stops_.Count() > 0) Stop(stops_.FirstReason());
  for (Followed& followed : followed_) {
    if (stopAsked_ || followed.isToStop) followed.exporter.AskToStop();
  }
  if (stops_.IsSessionEnding() && !sessionEndsAt_) sessionEndsAt_ = Now() + kSessionEndMilliseconds;
  const bool noWaiting = !options_.archive || stops_.Count() > 1;
  const bool atOnce = (stopAsked_ && noWaiting) || (sessionEndsAt_ && Now() >= *sessionEndsAt_);
  if (!atOnce || endedAtOnce_ || followed_.empty()) return;
  endedAtOnce_ = true;
  display_.Stop("force");
  for (Followed& followed : followed_) followed.exporter.EndAll();
}

void RunFollower::Stop(const std::string& by) {
  if (stopAsked_) return;
  stopAsked_ = true;
  view_.stopRequested = true;
  keeper_.outcome().stop = larkspan::console::Stop{UtcNow(), by};
  display_.Stop(by);
  keeper_.Write();
}

void RunFollower::ShowWorkers() {
  view_.workers.clear();
  std::uint32_t atWork = 0;
  for (const Followed& followed : followed_) {
    if (!followed.worker) return;
    if (followed.note) ++atWork;
    view_.workers.push_back({*followed.worker, followed.note});
  }
  if (!followed_.empty()) state_.SetAtWork(atWork);
  std::sort(
      view_.workers.begin(), view_.workers.end(),
      [](const WorkerView& left, const WorkerView& right) { return left.number < right.number; });
}

void RunFollower::Show() {
  ShowWorkers();
  OutcomeProgress progress;
  progress.phase = PhaseWord(state_.phase());
  progress.views = state_.views();
  progress.viewsDone = state_.viewsDone();
  progress.documents = state_.documents();
  progress.documentsDone = state_.documentsDone();
  progress.note = state_.lastNote();
  keeper_.outcome().progress = progress;
  keeper_.Renew(Now());
  view_.phase = progress.phase;
  view_.views = progress.views;
  view_.viewsDone = progress.viewsDone;
  view_.documents = progress.documents;
  view_.documentsDone = progress.documentsDone;
  view_.note = state_.lastNote();
  if (state_.phase() == Phase::kViews && !state_.begunViews().empty()) {
    view_.note = state_.begunViews().back();
  }
  view_.elapsed = ElapsedMilliseconds();
  display_.Update(view_, Now());
}

void RunFollower::ShowJoining(std::uint64_t done, std::uint64_t all) {
  view_.parts = all;
  view_.partsDone = done;
  TakeStops();
  keeper_.Renew(Now());
  ShowPhase(Phase::kJoining);
}

void RunFollower::ShowChecking(std::uint64_t done, std::uint64_t all) {
  view_.files = all;
  view_.filesDone = done;
  ShowPhase(Phase::kChecking);
}

void RunFollower::ShowEnded() { ShowPhase(Phase::kEnded); }

void RunFollower::ShowPhase(Phase phase) {
  view_.phase = PhaseWord(phase);
  view_.note.reset();
  view_.elapsed = ElapsedMilliseconds();
  display_.Update(view_, Now());
}

}  // namespace larkspan::console
