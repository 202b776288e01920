// Standard C streams with wide names and an owner. Modes are the C runtime's own: without a "b"
// a stream is in text mode, which turns each line feed into carriage return and line feed on disk.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/FileSystem.h"

namespace larkspan {

struct FileCloser {
  void operator()(std::FILE* file) const { file_system::Close(file); }
};

// Closes the stream when it goes out of scope; a failing close then goes unnoticed, so whoever
// needs the bytes on disk calls CloseFile.
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

// Opens a file; empty on failure, with the reason in errno.
UniqueFile OpenFile(const std::wstring& path, const wchar_t* mode);

// Opens an empty file without a name, in binary mode, that is gone when it is closed; empty on
// failure.
UniqueFile OpenTemporaryFile();

// Closes the stream and says whether all that was written to it has reached the file.
bool CloseFile(UniqueFile file);

// Opens the file for appending, writes the text with each line feed as carriage return and line
// feed, and closes it. The text is appended in one piece, whatever other threads and processes
// append to the file. Returns false when the file cannot be opened or the text cannot be written in
// full; what was written by then stays.
bool AppendToTextFile(const std::wstring& path, std::string_view text);

}  // namespace larkspan
