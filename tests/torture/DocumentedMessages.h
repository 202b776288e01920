// The messages that the documents promise, as patterns for the lines of the run log.
#pragma once

#include <regex>
#include <set>
#include <string>
#include <vector>

namespace larkspan::torture {

class DocumentedMessages {
 public:
  // Reads the tables of docs/messages.md; throws when a level has none.
  DocumentedMessages();

  // Whether a line of the run log is one of them, under its level.
  bool Contains(const std::string& line);

 private:
  std::vector<std::regex> patterns_;
  std::set<std::string> known_;  // Lines that were found to match.
};

}  // namespace larkspan::torture
