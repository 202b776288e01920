// A run that says nothing, unless it went wrong.
#pragma once

#include "console/show/LineSink.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

class QuietDisplay : public RunDisplay {
 public:
  explicit QuietDisplay(LineSink& errors) : errors_(errors) {}

  void Update(const RunView&, std::uint64_t) override {}
  void Start(const StartEvent&) override {}
  void Restart(const RestartEvent&) override {}
  void Lost(const LostEvent&) override {}
  void Warn(const Warning&) override {}
  void Stop(const std::string&) override {}
  void Retry(const RetryEvent&) override {}
  void Ready(const ReadyEvent&) override {}
  void End(const EndEvent& end) override;
  void Message(std::string_view) override {}
  void Error(std::string_view text) override;
  void Finish() override {}
  bool OutputBroken() const override { return false; }

 private:
  LineSink& errors_;
};

}  // namespace larkspan::console
