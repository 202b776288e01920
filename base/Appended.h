// How far an appending to a file came.
#pragma once

#include <cstddef>

namespace larkspan::file_system {

struct Appended {
  bool opened = false;
  std::size_t written = 0;
  bool complete = false;  // Everything is written, and the file is closed.
};

}  // namespace larkspan::file_system
