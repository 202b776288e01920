// The workers of a part of an export.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/follow/Crew.h"
#include "console/follow/ExportWork.h"
#include "console/follow/Resumption.h"

namespace larkspan::console {

// How a part that an earlier run left is gone on with.
Resumption PlanPart(ExportWork& work, const std::wstring& folder);

// Makes the part ready for that. A note that is tried again is recorded at once: one that ends the
// machine is not tried a third time.
void PreparePart(ExportWork& work, const std::wstring& folder, const Resumption& resumption);

// Starts a worker in the part, behind this note, and goes on as a supervisor does.
CrewMember StartPart(ExportWork& work, const std::wstring& folder, FirstWorker first,
                     std::optional<std::uint32_t> lostBefore = std::nullopt);

}  // namespace larkspan::console
