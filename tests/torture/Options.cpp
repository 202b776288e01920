#include "tests/torture/Options.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace larkspan::torture {

std::vector<std::size_t> ChooseIndices(const Options& options, const std::vector<bool>& isCore) {
  std::vector<std::size_t> indices(isCore.size());
  std::iota(indices.begin(), indices.end(), std::size_t{0});
  if (options.sample != 0 && options.sample < indices.size()) {
    std::mt19937 random(options.seed);
    std::shuffle(indices.begin(), indices.end(), random);
    const auto rest = indices.begin() + static_cast<std::ptrdiff_t>(options.sample);
    indices.erase(std::remove_if(rest, indices.end(), [&](std::size_t i) { return !isCore[i]; }),
                  indices.end());
    std::sort(indices.begin(), indices.end());
  }
  std::vector<std::size_t> own;
  for (std::size_t i = options.shard; i < indices.size(); i += options.shards) {
    own.push_back(indices[i]);
  }
  return own;
}

}  // namespace larkspan::torture
