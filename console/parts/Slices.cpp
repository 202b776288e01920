#include "console/parts/Slices.h"

#include <algorithm>

namespace larkspan::console {

namespace {

// A worker's start costs as much as some ten notes of a server's thirty a second. A longer slice
// than a thousand would only make a folder larger, and a run that is cut off wait for it.
constexpr std::size_t kShortest = 8;
constexpr std::size_t kLongest = 1000;

// The last slices decide how long one worker waits for the others: a small piece of its share, and
// never longer than this.
constexpr std::size_t kShortEnough = 64;
constexpr std::size_t kPiecesOfAShare = 8;

std::size_t ShortestOf(std::size_t notes, std::size_t workers) {
  return std::clamp(notes / (kPiecesOfAShare * workers), kShortest, kShortEnough);
}

}  // namespace

std::vector<Slice> CutIntoSlices(Slice notes, std::size_t workers) {
  const std::size_t shortest = ShortestOf(notes.size(), workers);
  std::vector<Slice> slices;
  while (!notes.empty()) {
    const std::size_t length = std::clamp(notes.size() / (2 * workers), shortest, kLongest);
    for (std::size_t cut = 0; cut < workers && !notes.empty(); ++cut) {
      slices.push_back(notes.first(std::min(length, notes.size())));
      notes = notes.subspan(slices.back().size());
    }
  }
  return slices;
}

}  // namespace larkspan::console
