#include "tests/console/sweeps/Seeds.h"

#include <cstdlib>
#include <numeric>
#include <string>

#include "tests/support/WholeNumber.h"

namespace larkspan::console {

std::vector<std::uint32_t> SweepSeeds(std::uint32_t count) {
  std::uint32_t first = 1;
  if (const char* const seeds = std::getenv("LARKSPAN_SWEEP_SEEDS")) {
    const std::string text = seeds;
    const std::size_t dash = text.find('-');
    first = static_cast<std::uint32_t>(testing::WholeNumber(text.substr(0, dash)));
    const auto last = static_cast<std::uint32_t>(
        testing::WholeNumber(dash == std::string::npos ? text : text.substr(dash + 1)));
    count = last + 1 - first;
  }
  std::vector<std::uint32_t> all(count);
  std::iota(all.begin(), all.end(), first);
  return all;
}

}  // namespace larkspan::console
