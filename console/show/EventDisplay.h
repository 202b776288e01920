// A run as events for a program, one JSON object a line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/show/EventLines.h"
#include "console/show/LineSink.h"
#include "console/show/Rate.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

class EventDisplay : public RunDisplay {
 public:
  EventDisplay(LineSink& output, LineSink& errors) : output_(output), errors_(errors) {}

  void Update(const RunView& view, std::uint64_t nowMilliseconds) override;
  void Start(const StartEvent& start) override { Write(lines_.Start(start)); }
  void Restart(const RestartEvent& restart) override { Write(lines_.Restart(restart)); }
  void Lost(const LostEvent& lost) override { Write(lines_.Lost(lost)); }
  void Warn(const Warning& warning) override { Write(lines_.Warn(warning)); }
  void Stop(const std::string& by) override { Write(lines_.Stop(by)); }
  void Retry(const RetryEvent& retry) override { Write(lines_.Retry(retry)); }
  void Ready(const ReadyEvent& ready) override { Write(lines_.Ready(ready)); }
  void End(const EndEvent& end) override { Write(lines_.End(end)); }
  void Message(std::string_view) override {}
  void Error(std::string_view text) override;
  void Finish() override {}
  bool OutputBroken() const override { return isBroken_; }

 private:
  void Write(const std::string& line);

  LineSink& output_;
  LineSink& errors_;
  EventLines lines_;
  Rate rate_;
  std::string phase_;
  std::optional<std::uint64_t> lastProgress_;
  bool isBroken_ = false;
};

}  // namespace larkspan::console
