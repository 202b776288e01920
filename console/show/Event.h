// What a run tells at its turning points, as plain values. docs/events.md has each as a program
// reads it. All texts are UTF-8; none may hold a secret.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/account/Account.h"

namespace larkspan::console {

struct StartEvent {
  std::string server;
  std::string path;
  std::string out;
  std::string mode;                  // "archive" or "design".
  std::vector<std::string> command;  // The arguments, without any secret.
};

struct RestartEvent {
  std::optional<std::uint32_t> note;  // At which the worker ended; none among the views.
  std::string cause;                  // "crash" or "stall".
  std::optional<std::uint32_t> worker = std::nullopt;  // Its number, where there are several.
};

struct LostEvent {
  Loss loss;
  std::optional<std::uint32_t> worker = std::nullopt;  // That came across it, as above.
};

struct RetryEvent {
  std::string what;  // "without views".
  std::string reason;
};

// The export is judged, and waits for a word before it gets its final name.
struct ReadyEvent {
  ExitCode exitCode = ExitCode::kWhole;  // What it will be.
  NoteCounts counts;
  std::uint64_t losses = 0;
  std::uint64_t findings = 0;
  std::uint64_t warnings = 0;
};

struct EndEvent {
  ExitCode exitCode = ExitCode::kWhole;
  std::string reason;                // One sentence for a code other than 0.
  std::string out;                   // Where the export lies.
  std::optional<NoteCounts> counts;  // None when there was nothing to judge.
  std::uint64_t seconds = 0;
};

}  // namespace larkspan::console
