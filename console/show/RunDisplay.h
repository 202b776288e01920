// Shows a run to whoever asked for it, in the one form that was asked for (MakeRunDisplay.h). The
// command that follows the run tells it what happens and knows nothing of terminals, widths or
// JSON. One thread calls.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "console/show/Event.h"
#include "console/show/RunView.h"

namespace larkspan::console {

class RunDisplay {
 public:
  RunDisplay() = default;
  virtual ~RunDisplay() = default;  // As Finish().
  RunDisplay(const RunDisplay&) = delete;
  RunDisplay& operator=(const RunDisplay&) = delete;

  // Call it at each change, and a few times a second besides; it shows no more than is fit to see.
  // The time is any that only grows, in milliseconds. A new phase is an event of its own.
  virtual void Update(const RunView& view, std::uint64_t nowMilliseconds) = 0;

  // Each is an event, and for a person a line where that helps. Of losses only the first twenty
  // have a line.
  virtual void Start(const StartEvent& start) = 0;
  virtual void Restart(const RestartEvent& restart) = 0;
  virtual void Lost(const LostEvent& lost) = 0;
  virtual void Warn(const Warning& warning) = 0;
  virtual void Stop(const std::string& by) = 0;  // A word of Stop::by in Outcome.h.
  virtual void Retry(const RetryEvent& retry) = 0;
  virtual void Ready(const ReadyEvent& ready) = 0;

  // The last one: takes the status line away and says how the run ended; when the exit code is not
  // 0 also where nothing else is said.
  virtual void End(const EndEvent& end) = 0;

  // Lines for a person, without a line end behind the last; a program and who wants quiet get none.
  virtual void Message(std::string_view text) = 0;

  // What went wrong, on standard error; in every form.
  virtual void Error(std::string_view text) = 0;

  // Takes the status line away.
  virtual void Finish() = 0;

  // A write to standard output failed: nobody reads any more. Nothing is written there since.
  virtual bool OutputBroken() const = 0;
};

}  // namespace larkspan::console
