#include "console/follow/RetryCrew.h"

#include <utility>

#include "console/follow/PartWorkers.h"

namespace larkspan::console {

RetryCrew::RetryCrew(ExportWork& work, std::vector<Part> parts)
    : work_(work), parts_(std::move(parts)) {}

std::optional<CrewMember> RetryCrew::BeginNext() {
  if (next_ == parts_.size()) return std::nullopt;
  const std::wstring& folder = parts_[next_++].folder;
  const Resumption resumption = PlanPart(work_, folder);
  PreparePart(work_, folder, resumption);
  CrewMember member = StartPart(work_, folder, resumption.first.value_or(FirstWorker{}));
  member.onlyOneNote = true;
  return member;
}

// Behind the note, which has its file or its line, there may be more that are finished.
bool RetryCrew::IsDone(const CrewMember& member) {
  const std::uint32_t tried = *work_.outcome().resumed.back().triedAgain;
  const Resumption resumption = PlanPart(work_, member.folder);
  isWhole_ = resumption.first && !resumption.triedAgain && resumption.first->noteId >= tried;
  return isWhole_;
}

}  // namespace larkspan::console
