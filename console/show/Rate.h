// How many documents are done in a second, and how long the rest will take. The rate is that of the
// last half minute, so that it follows a change; where documents are slow, that of the last few of
// them. While it is not known there is no value.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace larkspan::console {

class Rate {
 public:
  // So many are done at this time, in milliseconds of a clock that only grows. A number smaller
  // than before begins a new count.
  void Add(std::uint64_t nowMilliseconds, std::uint64_t done);

  std::optional<double> PerSecond() const;

  // No value when nothing comes any more, too.
  std::optional<std::uint64_t> SecondsFor(std::uint64_t documents) const;

 private:
  struct Sample {
    std::uint64_t milliseconds;
    std::uint64_t done;
  };

  void Remember(const Sample& sample);
  void ForgetOld();

  std::deque<Sample> samples_;  // The beginning of the window and what came in it; not empty ...
  Sample latest_ = {0, 0};      // ... when this one is known.
};

}  // namespace larkspan::console
