#include "console/CheckWatch.h"

#include <cstdlib>
#include <utility>

#include "console/ExitCode.h"

namespace larkspan::console {

CheckWatch::CheckWatch(bool isShown)
    : output_(STD_OUTPUT_HANDLE), isShown_(isShown && output_.IsTerminal()) {}

FileProgress CheckWatch::Watch(std::string verb) {
  FileProgressLine& line = lines_.emplace_back(output_, std::move(verb));
  return [this, &line](std::uint64_t done, std::uint64_t all) {
    if (isShown_) line.Show(done, all);
    return GoesOn();
  };
}

void CheckWatch::Clear() {
  for (FileProgressLine& line : lines_) line.Clear();
}

// A file of a machine that does not answer may take minutes to be given up.
bool CheckWatch::GoesOn() const {
  if (stops_.Count() > 1) std::_Exit(static_cast<int>(ExitCode::kStopped));
  return !IsStopped();
}

}  // namespace larkspan::console
