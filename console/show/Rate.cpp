#include "console/show/Rate.h"

#include <cmath>

namespace larkspan::console {

namespace {

constexpr std::uint64_t kWindowMilliseconds = 30'000;
constexpr std::uint64_t kLeastMilliseconds = 3'000;
constexpr std::uint64_t kLeastDocuments = 5;

// Two samples are no closer, so that there are few, however often somebody adds one.
constexpr std::uint64_t kSampleMilliseconds = 250;

}  // namespace

void Rate::Add(std::uint64_t nowMilliseconds, std::uint64_t done) {
  if (!samples_.empty() && done < latest_.done) samples_.clear();
  latest_ = {nowMilliseconds, done};
  Remember(latest_);
  ForgetOld();
}

// A time without progress takes no samples either, however long it is.
void Rate::Remember(const Sample& sample) {
  const bool isNew = samples_.empty() ||
                     (sample.done > samples_.back().done &&
                      sample.milliseconds >= samples_.back().milliseconds + kSampleMilliseconds);
  if (isNew) samples_.push_back(sample);
}

void Rate::ForgetOld() {
  const auto longEnough = [this](const Sample& from) {
    return latest_.milliseconds - from.milliseconds >= kWindowMilliseconds &&
           latest_.done - from.done >= kLeastDocuments;
  };
  while (samples_.size() > 1 && longEnough(samples_[1])) samples_.pop_front();
}

std::optional<double> Rate::PerSecond() const {
  if (samples_.empty()) return std::nullopt;
  const std::uint64_t milliseconds = latest_.milliseconds - samples_.front().milliseconds;
  const std::uint64_t done = latest_.done - samples_.front().done;
  if (milliseconds < kLeastMilliseconds || done < kLeastDocuments) return std::nullopt;
  return static_cast<double>(done) * 1000 / static_cast<double>(milliseconds);
}

std::optional<std::uint64_t> Rate::SecondsFor(std::uint64_t documents) const {
  const std::optional<double> rate = PerSecond();
  if (!rate) return std::nullopt;
  return static_cast<std::uint64_t>(std::ceil(static_cast<double>(documents) / *rate));
}

}  // namespace larkspan::console
