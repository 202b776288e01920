// A batch for a person: on a terminal a line of counts and one for each export at work, elsewhere a
// line of counts every ten seconds; and a line for each database that is done.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "console/batch/BatchDisplay.h"
#include "console/show/LineSink.h"
#include "console/show/StatusBlock.h"

namespace larkspan::console {

class PersonBatchDisplay : public BatchDisplay {
 public:
  PersonBatchDisplay(LineSink& output, LineSink& errors)
      : output_(output), errors_(errors), block_(output) {}

  void Start(const BatchStart& start, const BatchCounts& counts) override;
  void Update(const BatchCounts& counts, const std::vector<RunningView>& running,
              std::uint64_t nowMilliseconds) override;
  void Begin(const BatchEntry& entry) override;
  void Line(const BatchEntry& entry, const std::string& line, bool isEvent) override;
  void Finish(const BatchEntry& entry) override;
  void Stop(const std::string& by) override;
  void Error(const std::string& text) override;
  void End(const BatchEnd& end) override;
  bool OutputBroken() const override { return block_.IsBroken(); }

 private:
  bool IsDue(std::uint64_t nowMilliseconds);

  LineSink& output_;
  LineSink& errors_;
  StatusBlock block_;
  std::optional<std::uint64_t> lastShown_;
};

}  // namespace larkspan::console
