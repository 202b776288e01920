// Follows an exporter until it has ended: takes its progress lines and the lines of its log, shows
// them, stops it when somebody or something asks for that, and ends a worker that hangs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "console/folder/NoteLine.h"
#include "console/follow/Exporter.h"
#include "console/follow/LineReader.h"
#include "console/follow/LineSource.h"
#include "console/follow/LossTeller.h"
#include "console/follow/OutcomeKeeper.h"
#include "console/follow/RunState.h"
#include "console/follow/StopRequests.h"
#include "console/follow/Watches.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

struct FollowOptions {
  bool archive = true;
  bool stopOnBrokenOutput = false;
  std::optional<std::uint64_t> stallMilliseconds;
  std::optional<std::uint32_t> giveUp;
};

class RunFollower {
 public:
  RunFollower(const FollowOptions& options, OutcomeKeeper& keeper, RunDisplay& display,
              LossTeller& losses, StopRequests& stops);

  // Returns when nothing of the exporter is at work any more. May be called again for another run
  // in the same folder, whose lines are counted anew.
  void Follow(Exporter& exporter);

  const RunState& state() const { return state_; }

  // The worker was ended among the views because it hung there.
  bool HungAmongViews() const { return hungAmongViews_; }

  // The message of the last ERROR line; empty when there is none.
  const std::string& lastError() const { return lastError_; }

  // The run goes on behind so many of all notes. What the log holds already is known.
  void GoOnBehind(std::uint32_t done, std::uint32_t all);

  // The run goes on without views.
  void GoOnWithoutViews() { view_.withoutViews = true; }

  // Shows the run in this phase, with so many files of all read.
  void ShowChecking(std::uint64_t done, std::uint64_t all);

  // Since the first run began.
  std::uint64_t ElapsedMilliseconds() const;

 private:
  bool AwaitSomething(Exporter& exporter, LineSource& lines);
  void TakeLines(LineSource& lines);
  void TakeProgressLine(std::string_view line);
  void TakeLog();
  void TakeLogLine(std::string_view line);
  void TakeLoss(const NoteLine& line);
  std::string TakeRestart(std::uint32_t note);
  bool HasFile(std::uint32_t note) const;
  void CountLostNote(const Loss& loss);
  void TakeAudit();
  void LookAtPlainFolder();
  void LookAtSpace();
  void LookForStall(Exporter& exporter);
  void EndHungWorker(Exporter& exporter);
  void TakeStops(Exporter& exporter);
  void Stop(const std::string& by);
  void Show();

  FollowOptions options_;
  OutcomeKeeper& keeper_;
  RunDisplay& display_;
  LossTeller& losses_;
  StopRequests& stops_;

  RunState begin_;
  RunState state_;
  RunView view_;
  std::uint64_t begun_;
  StallWatch stall_;
  SpaceWatch space_;
  std::optional<GiveUpWatch> giveUp_;
  FileTail log_;
  FileTail audit_;
  std::optional<std::uint64_t> databaseSize_;
  std::string lastError_;
  bool stopAsked_ = false;
  bool endedAtOnce_ = false;
  bool endedForStall_ = false;
  bool hungAmongViews_ = false;
  std::optional<std::uint64_t> sessionEndsAt_;
  std::uint64_t lookedAtDisk_ = 0;
};

}  // namespace larkspan::console
