#include "console/show/FileProgressLine.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "console/text/Sizes.h"

namespace larkspan::console {

FileProgressLine::FileProgressLine(LineSink& terminal, std::string verb)
    : terminal_(terminal), verb_(std::move(verb)) {}

void FileProgressLine::Show(std::uint64_t done, std::uint64_t all) {
  if (all == 0) return;
  constexpr std::size_t kBarCells = 20;
  const auto filled = static_cast<std::size_t>(done * kBarCells / all);
  std::string line = verb_ + " [" + std::string(filled, '#') +
                     std::string(kBarCells - filled, '.') + "] " + GroupedText(done) + " of " +
                     GroupedText(all) + " files";
  // In the last column a terminal would begin a new line.
  line.resize(static_cast<std::size_t>(std::max(1, terminal_.Width() - 1)), ' ');
  terminal_.Write("\r" + line);
  isShown_ = true;
}

void FileProgressLine::Clear() {
  if (!isShown_) return;
  const auto width = static_cast<std::size_t>(std::max(1, terminal_.Width() - 1));
  terminal_.Write("\r" + std::string(width, ' ') + "\r");
  isShown_ = false;
}

}  // namespace larkspan::console
