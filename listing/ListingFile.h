// A text file of lines in the output folder, as the listing modes write it.
#pragma once

#include <string>
#include <string_view>

#include "base/FileSystem.h"

namespace larkspan {

// Each line is on disk, whole, before the next is begun, so that a library that ends the process
// leaves no half line.
class ListingFile {
 public:
  // Opens the file of the output folder with this name, which begins with a backslash, in place of
  // an earlier one. False when that fails.
  bool Open(std::wstring_view name);

  // Writes a line and its end. Line feeds inside it, which a name from the library may have, become
  // carriage return and line feed too. What fails is told by Close; no line is
  // written after it, so that the file holds the listing's beginning and no gap.
  void WriteLine(std::string_view line);

  // Whether every line has reached the file.
  bool Close();

 private:
  file_system::UniqueFile file_;
  std::string bytes_;  // Of the line that is written; the room for them is kept.
  bool isWritten_ = true;
};

}  // namespace larkspan
