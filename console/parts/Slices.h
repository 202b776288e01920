// How the notes of one export are shared out among several workers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace larkspan::console {

// Neighbours in the list of notes, which one worker after another exports.
using Slice = std::span<const std::uint32_t>;

// Cuts a list, in ascending order, into slices, which together are the list. The first are long,
// for each costs the start of a worker; the last are short, so that no worker ends long before the
// others. The slices view the list's own memory.
std::vector<Slice> CutIntoSlices(Slice notes, std::size_t workers);

}  // namespace larkspan::console
