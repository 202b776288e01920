#include "console/follow/RunState.h"

#include <utility>

namespace larkspan::console {

RunState::Step RunState::Enter(Phase phase) {
  if (phase_ == phase) return Step::kGoesOn;
  phase_ = phase;
  return Step::kNewPhase;
}

RunState::Step RunState::Take(const ProgressLine& line) {
  switch (line.kind) {
    case ProgressLine::Kind::kOpening:
      // A later worker goes on among the notes, and says no more than that it opens the database.
      if (opened_) return Step::kNewWorker;
      opened_ = true;
      return Enter(Phase::kOpening);
    case ProgressLine::Kind::kProperties:
      return Enter(Phase::kProperties);
    case ProgressLine::Kind::kViewCount:
      views_ = line.number;
      return Enter(Phase::kViews);
    case ProgressLine::Kind::kView:
      begunViews_.push_back(line.number);
      return Enter(Phase::kViews);
    case ProgressLine::Kind::kScanning:
      return Enter(Phase::kScanning);
    case ProgressLine::Kind::kDocumentCount:
      documents_ = line.number;
      return Enter(Phase::kDocuments);
    case ProgressLine::Kind::kDocument:
      ++documentsBegun_;
      lastNote_ = line.number;
      return Enter(Phase::kDocuments);
  }
  return Step::kGoesOn;
}

void RunState::GoOnBehind(std::uint32_t done, std::uint32_t all) {
  documentsBegun_ = done;
  documents_ = all;
}

bool RunState::TakeFiles(std::size_t listed, std::uint64_t exported) {
  atWork_ = 0;
  phase_ = Phase::kDocuments;
  documents_ = static_cast<std::uint32_t>(listed);
  const auto before = std::exchange(documentsBegun_, static_cast<std::uint32_t>(exported));
  return documentsBegun_ != before;
}

}  // namespace larkspan::console
