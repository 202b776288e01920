// A run as it is at one moment, with what its display needs. Plain values; all texts are UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace larkspan::console {

// Given when there was no progress for so long that a person should know.
struct Silence {
  std::string since;                  // By the local clock: "14:05".
  std::optional<std::uint32_t> note;  // At which the worker is.
};

// One of several workers.
struct WorkerView {
  std::uint32_t number = 1;           // From 1 on.
  std::optional<std::uint32_t> note;  // At which it is, once it has begun one.
};

struct RunView {
  // "starting", "opening", "properties", "views", "scanning", "documents", "joining",
  // "checking" or "ended".
  std::string phase = "starting";

  // Of all; none while it is not known. Done means that the next one has begun, or the run ended.
  std::optional<std::uint64_t> views;
  std::uint64_t viewsDone = 0;
  std::optional<std::uint64_t> documents;
  std::uint64_t documentsDone = 0;
  std::optional<std::uint64_t> parts;  // That are joined behind several workers.
  std::uint64_t partsDone = 0;
  std::optional<std::uint64_t> files;  // That are checked, when the export is over.
  std::uint64_t filesDone = 0;

  std::optional<std::uint32_t> note;  // At which the worker is, or the view.
  std::vector<WorkerView> workers;    // Of several, by their numbers; empty for one alone.
  std::uint64_t restarts = 0;         // Of workers, after crashes and stalls.
  std::uint64_t lost = 0;             // Notes, so far.
  std::uint64_t elapsed = 0;          // Milliseconds since the start.

  std::string server;  // Empty or "<Local>": this machine.
  std::string path;

  std::optional<Silence> silence;
  bool withoutViews = false;   // The run was taken up again without its views.
  bool stopRequested = false;  // It ends at the next note or view.
};

}  // namespace larkspan::console
