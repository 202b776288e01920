// Secrets that do not stay in memory.
#pragma once

#include <cstddef>
#include <string>

namespace larkspan {

// Overwrites the text, in its whole capacity, and leaves it empty. What is volatile is written
// although nobody reads it.
template <typename Character>
void Wipe(std::basic_string<Character>& secret) {
  secret.resize(secret.capacity());
  volatile Character* const place = secret.data();
  for (std::size_t i = 0; i < secret.size(); ++i) place[i] = Character{};
  secret.clear();
}

}  // namespace larkspan
