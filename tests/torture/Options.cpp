#include "tests/torture/Options.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <stdexcept>

#include "tests/support/WholeNumber.h"

namespace larkspan::torture {

namespace {

using testing::WholeNumber;

void ReadShard(const std::string& value, Options& options) {
  const std::size_t slash = value.find('/');
  if (slash == std::string::npos) throw std::invalid_argument("no shard: " + value);
  options.shard = WholeNumber(value.substr(0, slash));
  options.shards = WholeNumber(value.substr(slash + 1));
  if (options.shard >= options.shards) throw std::invalid_argument("no shard: " + value);
}

}  // namespace

void ReadOption(const std::string& argument, Options& options) {
  const std::size_t equals = argument.find('=');
  const std::string name = argument.substr(0, equals);
  const std::string value = equals == std::string::npos ? "" : argument.substr(equals + 1);
  if (argument == "--samples") {
    options.samples = true;
  } else if (argument == "--trace") {
    options.trace = true;
  } else if (name == "--sample") {
    options.sample = WholeNumber(value);
  } else if (name == "--only") {
    options.only = value;
  } else if (name == "--subject") {
    options.subject = value;
  } else if (name == "--seed") {
    options.seed = static_cast<std::uint32_t>(WholeNumber(value));
  } else if (name == "--shard") {
    ReadShard(value, options);
  } else {
    throw std::invalid_argument("unknown option " + argument);
  }
}

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
