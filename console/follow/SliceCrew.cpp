#include "console/follow/SliceCrew.h"

#include <algorithm>
#include <utility>

#include "console/follow/PartWorkers.h"
#include "console/text/Utf.h"

namespace larkspan::console {

SliceCrew::SliceCrew(ExportWork& work, const std::vector<std::uint32_t>& notes, FirstWorker first)
    : work_(work) {
  const auto next = std::upper_bound(notes.begin(), notes.end(), first.noteId);
  Slice left(next, notes.end());
  RemoveUnfinishedParts(work_.folder());
  auto parts = ReadParts(work_.folder());
  if (!parts) {
    LogFault(L"Unable to read 'parts'");
    isForeign_ = true;
    return;
  }
  for (Part& part : *parts) {
    const auto place = std::search(left.begin(), left.end(), part.notes.begin(), part.notes.end());
    if (place == left.end()) {
      RefuseForeign(part);
      return;
    }
    const auto before = static_cast<std::size_t>(place - left.begin());
    PlanNew(left.first(before));
    left = left.subspan(before + part.notes.size());
    PlanOld(std::move(part));
  }
  PlanNew(left);
}

// Of another list: what it holds would be exported twice, and other notes never.
void SliceCrew::RefuseForeign(const Part& part) {
  LogFault(L"'" + part.folder + L"' is no part of idtable.txt");
  parts_.clear();
  isForeign_ = true;
}

void SliceCrew::LogFault(const std::wstring& text) {
  RunLog(work_.folder(), LogLevel::kError).Error(L"%s", text.c_str());
  fault_ = WideToUtf8(text);
}

void SliceCrew::PlanNew(Slice notes) {
  for (const Slice& slice : CutIntoSlices(notes, work_.request.workers)) {
    Part part{PartFolder(work_.folder(), slice.front()), {slice.begin(), slice.end()}};
    parts_.push_back({std::move(part), {slice.front() - 1}, std::nullopt});
  }
}

void SliceCrew::PlanOld(Part part) {
  const Resumption resumption = PlanPart(work_, part.folder);
  const bool isDone = IsPartDone(part);
  done_ += isDone ? static_cast<std::uint32_t>(part.notes.size()) : resumption.done;
  const FirstWorker first = resumption.first.value_or(FirstWorker{part.notes.front() - 1});
  parts_.push_back({std::move(part), first, resumption, isDone});
}

std::optional<CrewMember> SliceCrew::BeginNext() {
  while (next_ < parts_.size() && parts_[next_].isBegun) ++next_;
  if (next_ == parts_.size()) return std::nullopt;
  PlannedPart& planned = parts_[next_];
  if (!Prepare(planned)) {
    next_ = parts_.size();
    return std::nullopt;
  }
  planned.isBegun = true;
  const bool isLost = planned.resumption && planned.first.noteIsLost;
  return StartPart(work_, planned.part.folder, planned.first,
                   isLost ? std::optional(planned.first.noteId) : std::nullopt);
}

bool SliceCrew::Prepare(const PlannedPart& planned) {
  if (planned.resumption) {
    PreparePart(work_, planned.part.folder, *planned.resumption);
    return true;
  }
  if (MakePart(work_.folder(), planned.part.notes)) return true;
  LogFault(L"Unable to make '" + planned.part.folder + L"'");
  return false;
}

bool SliceCrew::IsDone(const CrewMember& member) { return !SizeAfterLine(member.folder).empty(); }

std::vector<std::wstring> SliceCrew::DoneFolders() const {
  std::vector<std::wstring> folders;
  for (const PlannedPart& planned : parts_) {
    if (planned.resumption && planned.isBegun) folders.push_back(planned.part.folder);
  }
  return folders;
}

std::vector<Part> SliceCrew::CutOffParts() const {
  std::vector<Part> cutOff;
  for (const PlannedPart& planned : parts_) {
    if (planned.resumption && planned.resumption->triedAgain) cutOff.push_back(planned.part);
  }
  return cutOff;
}

std::vector<Part> SliceCrew::LeadingParts() const {
  std::vector<Part> leading;
  for (const PlannedPart& planned : parts_) {
    if (!planned.isBegun && !planned.resumption) break;
    leading.push_back(planned.part);
    if (!IsPartDone(planned.part)) break;
  }
  return leading;
}

bool SliceCrew::IsWhole() const {
  return !isForeign_ && std::all_of(parts_.begin(), parts_.end(), [](const PlannedPart& planned) {
    return planned.isBegun && IsPartDone(planned.part);
  });
}

}  // namespace larkspan::console
