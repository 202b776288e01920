// Whole files as the bytes on disk, without any translation of line ends.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/Lines.h"

namespace larkspan {

// The bytes of the file; throws when it cannot be opened, so that a missing file is never taken
// for an empty one.
std::string ReadBytes(const std::wstring& path);

// Creates or replaces the file; throws when that fails.
void WriteBytes(const std::wstring& path, std::string_view bytes);

// Creates the folder; throws when that fails.
void MakeFolder(const std::wstring& path);

// Whether there is a file or a folder of this name.
bool Exists(const std::wstring& path);

// The lines of a text, each without its carriage return and line feed. Throws when a line, the last
// one included, does not end in both.
Lines SplitLines(const std::string& bytes);

// The lines of the file, likewise.
Lines ReadLines(const std::wstring& path);

}  // namespace larkspan
