// How far the reading, or the moving, of many files is.
#pragma once

#include <cstdint>
#include <functional>

namespace larkspan::console {

// Called from the calling thread with what is done so far - files, where nothing else is said - and
// the number of all. False breaks the work off. Who works on files calls it ten times a second at
// most, and once before the first file and once after the last.
using FileProgress = std::function<bool(std::uint64_t done, std::uint64_t all)>;

}  // namespace larkspan::console
