// The workers of the slices of one export.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/follow/Crew.h"
#include "console/follow/ExportWork.h"
#include "console/follow/Resumption.h"
#include "console/parts/PartFolders.h"

namespace larkspan::console {

class SliceCrew : public Crew {
 public:
  // The notes behind `first` are shared out, those of the parts that are there as they are.
  SliceCrew(ExportWork& work, const std::vector<std::uint32_t>& notes, FirstWorker first);

  std::size_t size() const override { return work_.request.workers; }
  std::optional<CrewMember> BeginNext() override;
  std::string fault() const override { return fault_; }
  bool IsDone(const CrewMember& member) override;

  // How many notes the parts held already.
  std::uint32_t done() const { return done_; }

  // The parts that are done, and have no worker any more.
  std::vector<std::wstring> DoneFolders() const;

  // The parts in which a worker was cut off at a note that was not tried again yet.
  std::vector<Part> CutOffParts() const;

  // The parts from the first one on that have been begun without a gap, up to one that is not done.
  std::vector<Part> LeadingParts() const;

  // All of them are done.
  bool IsWhole() const;

 private:
  struct PlannedPart {
    Part part;
    FirstWorker first;
    std::optional<Resumption> resumption;  // Of one that was there.
    bool isBegun = false;
  };

  void PlanNew(Slice notes);
  void PlanOld(Part part);
  void RefuseForeign(const Part& part);
  void LogFault(const std::wstring& text);
  bool Prepare(const PlannedPart& planned);

  ExportWork& work_;
  std::vector<PlannedPart> parts_;
  std::size_t next_ = 0;
  std::uint32_t done_ = 0;
  bool isForeign_ = false;
  std::string fault_;
};

}  // namespace larkspan::console
