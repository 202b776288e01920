// The notes at which several workers were cut off, tried again one after the other: when one of
// them ends the machine once more, the others are not lost with it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "console/follow/Crew.h"
#include "console/follow/ExportWork.h"
#include "console/parts/PartFolders.h"

namespace larkspan::console {

class RetryCrew : public Crew {
 public:
  // The parts in which a worker was cut off.
  RetryCrew(ExportWork& work, std::vector<Part> parts);

  std::size_t size() const override { return 1; }
  std::optional<CrewMember> BeginNext() override;
  bool IsDone(const CrewMember& member) override;

  // All of them were tried, and are finished or lost.
  bool IsWhole() const { return isWhole_ && next_ == parts_.size(); }

 private:
  ExportWork& work_;
  std::vector<Part> parts_;
  std::size_t next_ = 0;
  bool isWhole_ = true;
};

}  // namespace larkspan::console
