// One round of the loop:
//   1. Wait for the exporter's end, a line, a request to stop, or a tenth of a second.
//   2. Take what has come: progress lines, and the lines that were added to the log. The log has a
//      note's line before the next note's progress line comes, so nothing is missed.
//   3. Once a second look at what no line tells: temp.tmp, the room on the disk, and in the plain
//      form, which has no progress lines, the files themselves.
//   4. Pass on a request to stop, and end what did not heed an earlier one.
//   5. Show what has changed, and once a minute write it into outcome.json.
// What came before the end is taken after it, so that nothing of a run goes unseen.
#include "console/follow/RunFollower.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/folder/NoteList.h"
#include "console/follow/Host.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr DWORD kRoundMilliseconds = 100;
constexpr std::uint64_t kDiskPeriod = 1000;
constexpr std::uint64_t kSilenceToTell = 600'000;
constexpr std::chrono::milliseconds kLastLines{2000};
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
      stall_(begun_),
      log_(output::Join(keeper.folder(), output::kLog)),
      audit_(output::Join(keeper.folder(), output::kAudit)) {
  view_.server = keeper.outcome().server;
  view_.path = keeper.outcome().path;
}

std::uint64_t RunFollower::ElapsedMilliseconds() const { return Now() - begun_; }

void RunFollower::GoOnBehind(std::uint32_t done, std::uint32_t all,
                             std::optional<std::uint32_t> lost) {
  begin_.GoOnBehind(done, all);
  lostBefore_ = lost;
  for (const std::string& line : log_.ReadNewLines()) {
    if (line.starts_with(kMajor)) ++view_.lost;
  }
}

void RunFollower::GoOnWithoutViews() {
  view_.withoutViews = true;
  ++view_.restarts;
}

void RunFollower::Follow(Exporter& exporter) {
  state_ = begin_;
  hungAmongViews_ = false;
  endedForStall_ = false;
  stall_.Progress(Now());
  LineSource lines(exporter.TakeOutput());
  while (AwaitSomething(exporter, lines)) {
    TakeLines(lines);
    TakeLog();
    if (Now() - lookedAtDisk_ >= kDiskPeriod) {
      lookedAtDisk_ = Now();
      TakeAudit();
      LookAtPlainFolder();
      LookAtSpace();
      stall_.Look(TemporaryFileMark(keeper_.folder()), Now());
    }
    TakeStops(exporter);
    LookForStall(exporter);
    Show();
  }
  if (stops_.Count() > 0) Stop(stops_.FirstReason());
  // A worker whose supervisor was ended from outside would go on by itself.
  exporter.EndAll();
  lines.AwaitEnd(kLastLines);
  TakeLines(lines);
  TakeLog();
  TakeAudit();
  LookAtPlainFolder();
  state_.TakeEnd();
  Show();
}

bool RunFollower::AwaitSomething(Exporter& exporter, LineSource& lines) {
  const std::array handles = {exporter.ended(), lines.event(), stops_.event()};
  return WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE,
                                kRoundMilliseconds) != WAIT_OBJECT_0;
}

void RunFollower::TakeLines(LineSource& lines) {
  for (const std::string& line : lines.Take()) TakeProgressLine(line);
}

void RunFollower::TakeProgressLine(std::string_view line) {
  const std::optional<ProgressLine> progress = ParseProgressLine(line);
  if (!progress) return;
  stall_.Progress(Now());
  if (state_.Take(*progress) == RunState::Step::kNewPhase) Show();
}

void RunFollower::TakeLog() {
  for (const std::string& line : log_.ReadNewLines()) TakeLogLine(line);
}

void RunFollower::TakeLogLine(std::string_view line) {
  if (line.starts_with(kWarningLevel)) {
    const std::optional<NoteLine> note = ParseNoteMessage(line.substr(kWarningLevel.size()));
    if (note) TakeLoss(*note);
  } else if (line.starts_with(kErrorLevel)) {
    lastError_ = line.substr(kErrorLevel.size());
    display_.Warn({"error-line", lastError_});
  }
}

void RunFollower::TakeLoss(const NoteLine& line) {
  // A worker that cannot start has the same line written again and again.
  if (!told_.emplace(line.fault, line.id).second) return;
  state_.TakeLostNote();
  Loss loss{LossKind::kNote, line.id, StageOf(line.fault), CauseOf(line)};
  if (line.fault == NoteFault::kDeath && lostBefore_ != line.id) loss.stage = TakeRestart(line.id);
  if (line.fault == NoteFault::kPictures) loss.kind = LossKind::kPictures;
  // A worker can die late. What becomes of its raw copy then is told when all is checked.
  if (line.fault == NoteFault::kDeath && HasAnyFile(line.id)) return;
  if (line.fault == NoteFault::kExport && HasFile(output::kDesignFolder, line.id)) {
    loss.kind = LossKind::kRawCopy;
    loss.stage = "raw copy";
  }
  losses_.Tell(loss);
  if (loss.kind == LossKind::kNote) CountLostNote(loss);
}

std::string RunFollower::TakeRestart(std::uint32_t note) {
  const std::string cause = std::exchange(endedForStall_, false) ? "stall" : "crash";
  keeper_.outcome().restarts.push_back({UtcNow(), note, cause});
  ++view_.restarts;
  display_.Restart({note, cause});
  stall_.Progress(Now());
  return cause;
}

bool RunFollower::HasFile(std::wstring_view subfolder, std::uint32_t note) const {
  return FileExists(output::Join(keeper_.folder(), output::NoteFile(subfolder, note)));
}

bool RunFollower::HasAnyFile(std::uint32_t note) const {
  if (!options_.archive) return HasFile({}, note);
  return HasFile(output::kDataFolder, note) || HasFile(output::kDesignFolder, note) ||
         HasFile(output::kProfileFolder, note);
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
  if (state_.TakeFiles(list.ids.size(), CountPlainNotes(keeper_.folder()))) stall_.Progress(Now());
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

void RunFollower::LookForStall(Exporter& exporter) {
  const std::uint64_t silence = stall_.Silence(Now());
  if (silence < kSilenceToTell) {
    view_.silence.reset();
  } else if (!view_.silence) {
    view_.silence = Silence{LocalClockBefore(silence), state_.lastNote()};
  }
  if (options_.stallMilliseconds && silence >= *options_.stallMilliseconds) EndHungWorker(exporter);
}

void RunFollower::EndHungWorker(Exporter& exporter) {
  stall_.Progress(Now());
  if (!exporter.EndWorker()) return;
  endedForStall_ = true;
  if (state_.phase() == Phase::kViews) {
    hungAmongViews_ = true;
  } else if (state_.phase() != Phase::kDocuments && options_.archive && !stopAsked_) {
    stopAsked_ = true;
    keeper_.outcome().stop = larkspan::console::Stop{UtcNow(), "stall"};
    display_.Stop("stall");
  }
}

void RunFollower::TakeStops(Exporter& exporter) {
  if (options_.stopOnBrokenOutput && display_.OutputBroken()) stops_.AskOnce("output");
  if (stops_.Count() > 0) Stop(stops_.FirstReason());
  if (stopAsked_) exporter.AskToStop();
  if (stops_.IsSessionEnding() && !sessionEndsAt_) sessionEndsAt_ = Now() + kSessionEndMilliseconds;
  const bool noWaiting = !options_.archive || stops_.Count() > 1;
  const bool atOnce = (stopAsked_ && noWaiting) || (sessionEndsAt_ && Now() >= *sessionEndsAt_);
  if (!atOnce || endedAtOnce_) return;
  endedAtOnce_ = true;
  display_.Stop("force");
  exporter.EndAll();
}

void RunFollower::Stop(const std::string& by) {
  if (stopAsked_) return;
  stopAsked_ = true;
  view_.stopRequested = true;
  keeper_.outcome().stop = larkspan::console::Stop{UtcNow(), by};
  display_.Stop(by);
  keeper_.Write();
}

void RunFollower::Show() {
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
