// Nothing of a batch, but on standard error what went wrong.
#pragma once

#include <string>
#include <vector>

#include "console/batch/BatchDisplay.h"
#include "console/show/LineSink.h"

namespace larkspan::console {

class QuietBatchDisplay : public BatchDisplay {
 public:
  explicit QuietBatchDisplay(LineSink& errors) : errors_(errors) {}

  void Start(const BatchStart&, const BatchCounts&) override {}
  void Update(const BatchCounts&, const std::vector<RunningView>&, std::uint64_t) override {}
  void Begin(const BatchEntry&) override {}
  void Line(const BatchEntry&, const std::string&, bool) override {}
  void Finish(const BatchEntry& entry) override;
  void Stop(const std::string&) override {}
  void Error(const std::string& text) override;
  void End(const BatchEnd& end) override;
  bool OutputBroken() const override { return false; }

 private:
  LineSink& errors_;
};

}  // namespace larkspan::console
