// An export that nobody disturbed, against which the others are held.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/support/OutputTree.h"

namespace larkspan::torture {

using testing::OutputTree;
using Lines = std::vector<std::string>;

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

// The lines of that file, without their ends. A last line without an end counts too.
Lines LinesOf(const OutputTree& tree, const std::string& name);

// The note IDs behind these words in the lines of the log.
std::set<std::uint32_t> NotesBehind(const Lines& log, const std::string& words);

}  // namespace larkspan::torture
