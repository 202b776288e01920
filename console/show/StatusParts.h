// What a status tells, piece by piece, in the order in which it is shown. What is not known, or is
// nothing yet, has no part.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/show/Rate.h"
#include "console/show/RunView.h"

namespace larkspan::console {

// What is known of the speed; one without values tells nothing of it.
struct Pace {
  std::optional<double> perSecond;
  std::optional<std::uint64_t> secondsLeft;
};

// Of the documents that are left. Only while there are any to wait for.
Pace PaceOf(const Rate& rate, const RunView& view);

// Of the documents, views, parts or files of this phase; none while their number is not known. 100
// only when all are done.
std::optional<int> PercentOf(const RunView& view);

// From the most important to the first that is left out.
enum class Importance {
  kSilence,
  kPhase,
  kStop,
  kLost,
  kPercent,
  kTimeLeft,
  kRestarts,
  kWorkers,
  kName,
  kRate,
  kNote
};

struct StatusPart {
  Importance importance;
  std::string text;
  bool isBad = false;        // A person is to see this one.
  std::string shorter = {};  // What is shown where not all has room; empty: nothing shorter.
};

// The first one is the phase, the last one the whole name of the database.
std::vector<StatusPart> StatusParts(const RunView& view, const Pace& pace);

// "server!!path", or the path alone on this machine; safe for a terminal.
std::string DatabaseName(const std::string& server, const std::string& path);

}  // namespace larkspan::console
