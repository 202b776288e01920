// Lists in what a person reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace larkspan::console {

// The text with a question mark for each control character.
std::string WithoutControls(std::string text);

// Lines under a title; of very many of a kind the first twenty.
class Section {
 public:
  void Add(const std::string& kind, const std::string& line);

  // Empty when there is no line.
  std::string Text(const char* title) const;

 private:
  struct Group {
    std::string kind;
    std::vector<std::string> lines;
    std::uint64_t count = 0;
  };

  Group& GroupOf(const std::string& kind);

  std::vector<Group> groups_;
  std::uint64_t count_ = 0;
};

}  // namespace larkspan::console
