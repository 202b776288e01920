// How much there is to do in one run: what the bench's library has in it, and what the floors do
// without the program. The environment tells it, so that every process of a run knows.
#pragma once

#include <cstdint>

namespace larkspan::bench {

struct Workload {
  std::uint32_t notes = 0;       // Data documents, one note ID after the other.
  std::uint32_t firstNote = 1;   // The ID of the first.
  std::uint32_t wait = 0;        // Milliseconds that it takes to open a note, without any work.
  std::uint32_t chunks = 1;      // In which the exporter hands out a note.
  std::uint32_t chunkBytes = 0;  // Of each chunk.
  std::uint32_t views = 0;
  std::uint32_t entries = 0;  // Of each view.
  std::uint32_t columns = 0;
  std::uint32_t databases = 0;  // In the data directory.
  std::uint32_t crashes = 0;    // 1: to open a note ends the process.
};

// What LARKSPAN_WORKLOAD says, as in "notes=100 chunks=1 chunkBytes=2048"; read once. Words that it
// does not know, and what is no number, end the process: a misspelt workload would measure nothing.
const Workload& ProcessWorkload();

}  // namespace larkspan::bench
