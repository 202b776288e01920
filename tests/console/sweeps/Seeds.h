// The seeds of the sweeps, and what they choose from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace larkspan::console {

// What the seeds of a sweep choose from.
class Chance {
 public:
  explicit Chance(std::uint32_t seed) : random_(seed) {}

  // One of 0, 1, ... count - 1.
  std::size_t Below(std::size_t count) { return random_() % count; }

  template <typename Things>
  const auto& OneOf(const Things& things) {
    return things[Below(std::size(things))];
  }

 private:
  std::mt19937 random_;
};

// The seeds of a sweep, each of which is one test: 1, 2, ... `count`, or those that the environment
// names: LARKSPAN_SWEEP_SEEDS=101-200.
std::vector<std::uint32_t> SweepSeeds(std::uint32_t count);

// Names a test by its seed.
inline constexpr auto kSeedName = [](const auto& info) {
  return "Seed" + std::to_string(info.param);
};

}  // namespace larkspan::console
