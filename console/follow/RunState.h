// How far a run is, by its progress lines.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "console/follow/Phase.h"
#include "console/follow/ProgressLine.h"

namespace larkspan::console {

class RunState {
 public:
  // What a line that comes next says of the run beside its numbers.
  enum class Step { kGoesOn, kNewPhase, kNewWorker };
  Step Take(const ProgressLine& line);

  // The run begins behind so many of all notes.
  void GoOnBehind(std::uint32_t done, std::uint32_t all);

  // What the folder of a plain export tells: so many notes are listed, so many have their file.
  // True when there is something new.
  bool TakeFiles(std::size_t listed, std::uint64_t exported);

  // So many workers have a note or a view in hand; without a word, one.
  void SetAtWork(std::uint32_t workers) { atWork_ = workers; }

  // The exporter has ended: what was begun last is done, unless a worker died at it.
  void TakeEnd() { atWork_ = 0; }

  // A line of the log names a note.
  void TakeLostNote() { hasLostNote_ = true; }

  // A note has been begun, as far as can be known.
  bool HasBegunNotes() const { return documentsBegun_ > 0 || hasLostNote_; }

  Phase phase() const { return phase_; }
  std::optional<std::uint32_t> views() const { return views_; }
  std::optional<std::uint32_t> documents() const { return documents_; }
  std::uint32_t viewsDone() const { return Done(viewsBegun(), Phase::kViews); }
  std::uint32_t documentsDone() const { return Done(documentsBegun_, Phase::kDocuments); }

  // The views that were begun, in that order.
  const std::vector<std::uint32_t>& begunViews() const { return begunViews_; }

  // The note that was begun last.
  std::optional<std::uint32_t> lastNote() const { return lastNote_; }

 private:
  std::uint32_t viewsBegun() const { return static_cast<std::uint32_t>(begunViews_.size()); }

  // A line comes before its view or note.
  std::uint32_t Done(std::uint32_t begun, Phase phase) const {
    return phase_ == phase ? begun - std::min(begun, atWork_) : begun;
  }
  Step Enter(Phase phase);

  Phase phase_ = Phase::kStarting;
  std::uint32_t atWork_ = 1;
  bool opened_ = false;
  bool hasLostNote_ = false;
  std::uint32_t documentsBegun_ = 0;
  std::optional<std::uint32_t> views_;
  std::optional<std::uint32_t> documents_;
  std::vector<std::uint32_t> begunViews_;
  std::optional<std::uint32_t> lastNote_;
};

}  // namespace larkspan::console
