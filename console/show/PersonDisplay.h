// A run for a person: a status, and a line for what happens.
#pragma once

#include <cstdint>
#include <string>

#include "console/show/LinePrinter.h"
#include "console/show/LineSink.h"
#include "console/show/Rate.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

class PersonDisplay : public RunDisplay {
 public:
  PersonDisplay(LineSink& output, LineSink& errors) : errors_(errors), printer_(output) {}

  void Update(const RunView& view, std::uint64_t nowMilliseconds) override;
  void Start(const StartEvent& start) override;
  void Restart(const RestartEvent& restart) override;
  void Lost(const LostEvent& lost) override;
  void Warn(const Warning& warning) override;
  void Stop(const std::string& by) override;
  void Retry(const RetryEvent& retry) override;
  void Ready(const ReadyEvent& ready) override;
  void End(const EndEvent& end) override;
  void Message(std::string_view text) override { printer_.PrintLine(text); }
  void Error(std::string_view text) override;
  void Finish() override { printer_.Clear(); }
  bool OutputBroken() const override { return printer_.IsBroken(); }

 private:
  LineSink& errors_;
  LinePrinter printer_;
  Rate rate_;
  std::uint64_t losses_ = 0;
};

}  // namespace larkspan::console
