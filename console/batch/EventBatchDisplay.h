// A batch as events for a program, one JSON object a line: docs/events.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "console/batch/BatchDisplay.h"
#include "console/show/LineSink.h"

namespace larkspan::console {

class EventBatchDisplay : public BatchDisplay {
 public:
  EventBatchDisplay(LineSink& output, LineSink& errors) : output_(output), errors_(errors) {}

  void Start(const BatchStart& start, const BatchCounts& counts) override;
  void Update(const BatchCounts& counts, const std::vector<RunningView>& running,
              std::uint64_t nowMilliseconds) override;
  void Begin(const BatchEntry& entry) override;
  void Line(const BatchEntry& entry, const std::string& line, bool isEvent) override;
  void Finish(const BatchEntry& entry) override;
  void Stop(const std::string& by) override;
  void Error(const std::string& text) override;
  void End(const BatchEnd& end) override;
  bool OutputBroken() const override { return isBroken_; }

 private:
  void Write(const char* kind, const nlohmann::ordered_json& fields);

  LineSink& output_;
  LineSink& errors_;
  std::uint64_t sequence_ = 0;
  bool isBroken_ = false;
};

}  // namespace larkspan::console
