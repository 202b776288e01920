// How far a run is.
#pragma once

namespace larkspan::console {

enum class Phase {
  kStarting,
  kOpening,
  kProperties,
  kViews,
  kScanning,
  kDocuments,
  kJoining,
  kChecking,
  kEnded,
};

// As outcome.json and the events name it: "documents".
const char* PhaseWord(Phase phase);

// What the exporter was doing then: "exporting the documents".
const char* PhaseDeed(Phase phase);

}  // namespace larkspan::console
