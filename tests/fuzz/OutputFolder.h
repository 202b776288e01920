// The output folder of a fuzz target that reads files of it.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::fuzz {

// Makes the folder, when that was not done yet, and a configuration of the process in which it is
// the output folder and nothing is logged.
void UseOutputFolder();

// Replaces the content of a file of the output folder, from its name with the backslash in front.
void WriteOutputFile(std::wstring_view name, std::string_view bytes);

// What was appended to any file since the last call: nothing is appended on disk, which takes
// longer than all the rest.
std::string TakeAppendedText();

}  // namespace larkspan::fuzz
