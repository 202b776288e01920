// The order in which searches and lookups give what they find: always the same, and of no help to
// anybody. Does not change once made; any thread may call.
#pragma once

#include <cstddef>
#include <numeric>

namespace larkspan::standin {

// Steps of a fixed share of the count, made coprime to it so that every entry has its turn.
class Scrambler {
 public:
  explicit Scrambler(std::size_t count) : count_(count), step_(count * 5 / 8 + 1) {
    while (count_ != 0 && std::gcd(count_, step_) != 1) ++step_;
  }

  // The entry whose turn it is; turns count from 0 and end before the count.
  std::size_t At(std::size_t turn) const { return (turn * step_ + count_ / 3) % count_; }

 private:
  std::size_t count_;
  std::size_t step_;
};

}  // namespace larkspan::standin
