#include "console/follow/Phase.h"

#include <array>
#include <cstddef>

namespace larkspan::console {

namespace {

struct Words {
  const char* word;
  const char* deed;
};

constexpr std::array<Words, 9> kWords = {{
    {"starting", "starting the Notes runtime"},
    {"opening", "opening the database"},
    {"properties", "exporting the database's properties"},
    {"views", "exporting the views"},
    {"scanning", "listing the notes"},
    {"documents", "exporting the notes"},
    {"joining", "joining what several workers have exported"},
    {"checking", "checking the export"},
    {"ended", "ending"},
}};

}  // namespace

const char* PhaseWord(Phase phase) { return kWords[static_cast<std::size_t>(phase)].word; }

const char* PhaseDeed(Phase phase) { return kWords[static_cast<std::size_t>(phase)].deed; }

}  // namespace larkspan::console
