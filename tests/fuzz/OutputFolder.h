// The output folder of a fuzz target that reads files of it: on disk where the target is a Windows
// program, in memory where it is a native one.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::fuzz {

// Makes the folder, when that was not done yet, and a configuration of the process in which it is
// the output folder and nothing is logged.
void UseOutputFolder();

// Replaces the content of a file of the output folder, from its name with the backslash in front.
void WriteOutputFile(std::wstring_view name, std::string_view bytes);

// What a stream in text mode gives of the bytes of a file. The C runtime of Windows ends the file
// at the first Control-Z and leaves out the carriage return of each line end; elsewhere the bytes
// come as they are.
std::string TextModeContent(std::string_view bytes);

}  // namespace larkspan::fuzz
