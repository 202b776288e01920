// Shows a batch to whoever asked for it, in the one form that was asked for. One thread calls.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/batch/BatchEntry.h"
#include "console/show/RunView.h"
#include "console/show/StatusParts.h"

namespace larkspan::console {

struct BatchStart {
  std::string list;
  std::string root;
  std::uint64_t repeated = 0;  // Lines that named a database again.
  std::size_t jobs = 1;
};

struct BatchEnd {
  ExitCode code = ExitCode::kWhole;
  std::string reason;  // Why not all was begun; empty: all was.
  BatchCounts counts;
  std::string summary;  // The page; empty when it could not be written.
  std::uint64_t seconds = 0;
};

// An export at work.
struct RunningView {
  RunView view;
  Pace pace;
};

class BatchDisplay {
 public:
  BatchDisplay() = default;
  virtual ~BatchDisplay() = default;
  BatchDisplay(const BatchDisplay&) = delete;
  BatchDisplay& operator=(const BatchDisplay&) = delete;

  virtual void Start(const BatchStart& start, const BatchCounts& counts) = 0;

  // Call it a few times a second; it shows no more than is fit to see. The time is any that only
  // grows, in milliseconds.
  virtual void Update(const BatchCounts& counts, const std::vector<RunningView>& running,
                      std::uint64_t nowMilliseconds) = 0;

  virtual void Begin(const BatchEntry& entry) = 0;

  // A line of the export's own, an event or not.
  virtual void Line(const BatchEntry& entry, const std::string& line, bool isEvent) = 0;

  virtual void Finish(const BatchEntry& entry) = 0;
  virtual void Stop(const std::string& by) = 0;  // As Stop::by in Outcome.h.
  virtual void Error(const std::string& text) = 0;
  virtual void End(const BatchEnd& end) = 0;

  // Nobody reads standard output any more.
  virtual bool OutputBroken() const = 0;
};

}  // namespace larkspan::console
