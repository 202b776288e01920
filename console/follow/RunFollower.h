// Follows an exporter, or a crew of them, until it has ended: takes the progress lines and the
// lines of the log, shows them, stops it when somebody or something asks for that, and ends a
// worker that hangs.
#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "console/folder/NoteLine.h"
#include "console/follow/Crew.h"
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

  // The same with an exporter that is asked to stop once the notes are about to be listed.
  void FollowListing(Exporter& exporter);

  // Returns when nothing of the crew is at work any more, and nothing is left to begin or the run
  // ends. Its notes are behind so many of all.
  void FollowCrew(Crew& crew, std::uint32_t done, std::uint32_t all);

  const RunState& state() const { return state_; }

  // The worker was ended among the views because it hung there.
  bool HungAmongViews() const { return hungAmongViews_; }

  // The message of the last ERROR line; empty when there is none.
  const std::string& lastError() const { return lastError_; }

  // The run goes on behind so many of all notes. What the log holds already is known. The note, if
  // there is one, is told as lost without a worker that died at it now.
  void GoOnBehind(std::uint32_t done, std::uint32_t all, std::optional<std::uint32_t> lost);

  // Counts what the log in this folder has lost, which no worker adds to any more.
  void CountLostBefore(const std::wstring& folder);

  // The run goes on without views, with another worker.
  void GoOnWithoutViews();

  // An error that the console itself wrote to the log, without its level.
  void TakeError(const std::string& message);

  // Shows the run in this phase, with so many parts of all joined, and takes requests to stop.
  void ShowJoining(std::uint64_t done, std::uint64_t all);

  // Shows the run in this phase, with so many files of all read.
  void ShowChecking(std::uint64_t done, std::uint64_t all);

  // Shows that all is over.
  void ShowEnded();

  // Since the first run began.
  std::uint64_t ElapsedMilliseconds() const;

 private:
  // One exporter at work, and what is known of it alone.
  struct Followed {
    Followed(Exporter& itsExporter, std::wstring itsFolder, std::uint64_t now);

    Exporter& exporter;
    std::wstring folder;
    LineSource lines;
    FileTail ownLog;
    FileTail* log = &ownLog;
    StallWatch stall;
    std::optional<std::uint32_t> worker;      // Its number in a crew.
    std::optional<std::uint32_t> note;        // That it began last.
    std::optional<std::uint32_t> lostBefore;  // Workers had died at this note before it was begun.
    bool endedForStall = false;
    bool isToStop = false;
    bool onlyOneNote = false;  // It stops when it begins a second one.
  };

  void FollowAlone(Exporter& exporter);
  void BeginMembers(Crew& crew, std::list<CrewMember>& members);
  void EndMembers(Crew& crew, std::list<CrewMember>& members);
  std::uint32_t FreeNumber() const;
  void EndCrewBehind(std::list<Followed>::iterator first);
  static bool HasEnded(const Exporter& exporter);
  // False: for a round nothing did.
  bool SomethingCame();
  void TakeRound(bool somethingCame);
  void TakeLast(Followed& followed);
  bool TakeLines(Followed& followed);
  void TakeProgressLine(Followed& followed, std::string_view line);
  void TakeLog(Followed& followed);
  void TakeLogLine(Followed& followed, std::string_view line);
  void TakeLoss(Followed& followed, const NoteLine& line);
  std::string TakeRestart(Followed& followed, std::uint32_t note);
  bool HasFile(const Followed& followed, std::wstring_view subfolder, std::uint32_t note) const;
  bool HasAnyFile(const Followed& followed, std::uint32_t note) const;
  void CountLostIn(FileTail& log);
  void ShowPhase(Phase phase);
  void CountLostNote(const Loss& loss);
  void TakeAudit();
  void LookAtPlainFolder();
  void LookAtSpace();
  void LookForStalls();
  void ShowSilence();
  void EndHungWorker(Followed& followed);
  bool IsAmongNotes(const Followed& followed) const;
  void TakeStops();
  void Stop(const std::string& by);
  void ShowWorkers();
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
  std::list<Followed> followed_;  // In the order in which they began.
  SpaceWatch space_;
  std::optional<GiveUpWatch> giveUp_;
  FileTail log_;
  FileTail audit_;
  std::optional<std::uint64_t> databaseSize_;
  std::string lastError_;
  std::set<std::pair<NoteFault, std::uint32_t>> told_;  // By lines of the log.
  std::optional<std::uint32_t> lostBefore_;
  bool stopAsked_ = false;
  bool endedAtOnce_ = false;
  bool onlyList_ = false;  // The exporter is to stop when it has listed the notes.
  bool crewEnds_ = false;  // No member is begun any more.
  bool hungAmongViews_ = false;
  std::optional<std::uint64_t> sessionEndsAt_;
  std::uint64_t lookedAtDisk_ = 0;
};

}  // namespace larkspan::console
