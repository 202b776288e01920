// What is wrong with the lines of a listing: a sentence for each of the first ones, the number of
// all. A line that cannot be shown is told here.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "console/folder/TextLines.h"

namespace larkspan::console {

class LineFaults {
 public:
  // The name of the file, for the sentences.
  explicit LineFaults(std::string file) : file_(std::move(file)) {}

  // "Line 7 of scan.txt " and these words, and what the line holds.
  void Add(const TextLine& line, const std::string& words);

  std::uint64_t Count() const { return count_; }

  // One for each of the first lines, and one for all others.
  std::vector<std::string> Sentences() const;

 private:
  std::string file_;
  std::vector<std::string> sentences_;
  std::uint64_t count_ = 0;
};

}  // namespace larkspan::console
