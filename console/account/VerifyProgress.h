// How far the reading of a folder is.
#pragma once

#include <cstdint>
#include <functional>

namespace larkspan::console {

// Called from the calling thread, ten times a second at most, with the files read so far and the
// number of all; also once before the first file and once after the last. False breaks the reading
// off.
using VerifyProgress = std::function<bool(std::uint64_t done, std::uint64_t all)>;

}  // namespace larkspan::console
