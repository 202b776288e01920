// Reading a file of the data folder that need not be well.
#pragma once

#include <exception>
#include <filesystem>

#include "standin/Platform.h"

namespace larkspan::standin {

// What the function makes of the file. When it throws, standard error tells why the file is of no
// use, and the result is null.
template <typename Read>
auto ReadOrReport(const std::filesystem::path& file, const Read& read) -> decltype(read(file)) {
  try {
    return read(file);
  } catch (const std::exception& error) {
    WriteToStandardError("nnotes: " + PathToUtf8(file) + ": " + error.what() + "\n");
    return nullptr;
  }
}

}  // namespace larkspan::standin
