// The lines of the texts that a run leaves behind, and note IDs as they stand there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tests/support/Lines.h"
#include "tests/support/OutputTree.h"

namespace larkspan::testing {

// The lines of a text, without their ends. Its last line may lack the end, as a full disk, or the
// end of its writer, leaves it; it then begins with these words, as no whole line does.
inline constexpr char kTorn[] = "torn: ";
Lines LinesIn(const std::string& text);

// The lines of a file of the tree; none when there is no such file.
Lines LinesOf(const OutputTree& tree, const std::string& name);

// What stands behind the level in a line of the run log; nothing in a line without a level.
std::string_view MessageOf(std::string_view line);

// How many lines of the log begin so, behind their level.
int CountMessages(const Lines& log, std::string_view beginning);

// A note ID as it stands in file names and log lines.
std::string NoteIdText(std::uint32_t noteId);

}  // namespace larkspan::testing
