// How far the reading of a folder's files is, as a line of a terminal that is written over.
#pragma once

#include <cstdint>
#include <string>

#include "console/show/LineSink.h"

namespace larkspan::console {

class FileProgressLine {
 public:
  // What is done to the files: "Checking".
  FileProgressLine(LineSink& terminal, std::string verb);

  // The reading calls ten times a second at most.
  void Show(std::uint64_t done, std::uint64_t all);

  // Shows each call, for whoever reads; it never breaks the reading off.
  auto Watch() {
    return [this](std::uint64_t done, std::uint64_t all) {
      Show(done, all);
      return true;
    };
  }
  void Clear();

 private:
  LineSink& terminal_;
  std::string verb_;
  bool isShown_ = false;
};

}  // namespace larkspan::console
