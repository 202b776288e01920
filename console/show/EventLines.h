// The events of a run as lines for a program: docs/events.md. Each function gives the fields of one
// kind, and EventLines the line around them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "console/show/Event.h"
#include "console/show/RunView.h"
#include "console/show/StatusParts.h"
#include "console/text/Utf.h"

namespace larkspan::console {

class EventLines {
 public:
  using Clock = std::function<std::string()>;  // UTC, as UtcNow() gives it.

  explicit EventLines(Clock clock = UtcNow) : clock_(std::move(clock)) {}

  // Each gives one line with its end. What is no UTF-8 in a text becomes U+FFFD.
  std::string Start(const StartEvent& start);
  std::string Phase(const std::string& phase);
  std::string Progress(const RunView& view, const Pace& pace);
  std::string Restart(const RestartEvent& restart);
  std::string Lost(const LostEvent& lost);
  std::string Warn(const Warning& warning);
  std::string Stop(const std::string& by);
  std::string Retry(const RetryEvent& retry);
  std::string Ready(const ReadyEvent& ready);
  std::string End(const EndEvent& end);

 private:
  Clock clock_;
  std::uint64_t sequence_ = 0;
};

}  // namespace larkspan::console
