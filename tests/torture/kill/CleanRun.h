// An export that nobody disturbed, against which the others are held.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/support/RunTexts.h"

namespace larkspan::torture {

using testing::LinesOf;
using testing::MessageOf;
using testing::NoteIdText;
using testing::OutputTree;

// Notes in the order of their lines; one that is named twice comes twice.
using NoteIds = std::vector<std::uint32_t>;

struct CleanRun {
  OutputTree tree;
  std::chrono::milliseconds duration{0};
  // The files of each note: the first, and its raw copy when it has one.
  std::map<std::uint32_t, Lines> notes;
};

// Fills in the notes from the tree.
void FindNotes(CleanRun& run);

// Whether this is the name under which a file lies when it is whole.
bool IsFinalName(const std::string& name);

// The content of that file, or nothing when it is missing.
std::string ContentOf(const OutputTree& tree, const std::string& name);

// The note IDs behind these words in the lines of the log.
NoteIds NotesBehind(const Lines& log, const std::string& words);

}  // namespace larkspan::torture
