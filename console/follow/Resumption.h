// Taking up an export that was cut off: where in its list of notes it goes on.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/account/Outcome.h"
#include "supervision/Supervisor.h"

namespace larkspan::console {

struct Resumption {
  // There are files of notes, and idtable.txt is not the list that they were exported from: nothing
  // can be gone on with, and nothing may be taken away.
  bool isImpossible = false;

  // None: no note had been begun, so the export begins anew.
  std::optional<FirstWorker> first;

  // So many notes of the list are done.
  std::uint32_t done = 0;
  std::uint32_t all = 0;

  // The note at which it was cut off, which is tried again now. A second time it is not.
  std::optional<std::uint32_t> triedAgain;
};

// Looks at what the folder holds; nobody may be at work there. `outcome` is that of the run that
// was cut off.
Resumption PlanResumption(const std::wstring& folder, const Outcome& outcome);

// Takes away what would be in the way: the marker and half files; for an export that begins anew
// everything that a run without notes leaves. The design file of a note that is tried again is
// moved aside, since the exporter replaces none; SettleDesignFiles puts it back.
void PrepareResumption(const std::wstring& folder, const Resumption& resumption);

}  // namespace larkspan::console
