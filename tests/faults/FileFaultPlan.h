// The plan of the file operations that fail, read from its text. Faults are separated by
// semicolons; each is a line of words with blanks between them:
//
//   OPERATION FILE CALLS ERROR [BYTES]
//
//   OPERATION  open, read, write, flush, close, delete, move or folder (the making of one). Of a
//              file that is opened for reading all reads fail or none does. Appending a line to the
//              run log or the audit report, or a chunk to temp.tmp, is an open, a write and a
//              close.
//   FILE       the last component of the path, in any letter case; a move has the name that the
//              file would get. The temporary file without a name is called (temporary); its
//              reads all fail or none does. * is any file.
//   CALLS      which of the process's calls of this operation for such a file fail, counted from
//              1: "3", "2-4", "5-" for all from the fifth on, or * for all.
//   ERROR      diskFull, sharingViolation, accessDenied, fileNotFound, pathNotFound or pathTooLong:
//              what errno and GetLastError then say. noError, for a write, is a short one that sets
//              no error, so that the close succeeds.
//   BYTES      for a write: how many bytes are written nevertheless; 0 when left out.
//
//   write temp.tmp 2 diskFull 10; delete temp.tmp 1-4 sharingViolation
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace larkspan {

// What a failing operation leaves in errno and in GetLastError.
struct FileError {
  int runtimeError = 0;
  unsigned long systemError = 0;
};

struct FileFault {
  std::string operation;
  std::string file;  // Lower case; "*" for any.
  int firstCall = 1;
  int lastCall = 1;
  FileError error;
  std::size_t bytes = 0;
};

// Throws std::invalid_argument, with the fault's text, when a fault is none of the above.
std::vector<FileFault> ParseFileFaultPlan(const std::string& plan);

// The last component of a path, in lower case and UTF-8.
std::string FileNameOf(std::wstring_view path);

}  // namespace larkspan
