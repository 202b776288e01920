// Which servers a listing has when calls fail that read them from the address books.
#pragma once

#include <array>
#include <set>
#include <string>
#include <vector>

#include "tests/torture/FaultCase.h"

namespace larkspan::torture {

// What the library hands over of the address books, without the program: the texts of each match,
// in their order, as the listing abbreviates them.
class ServersModel {
 public:
  // Starts and ends a runtime of its own.
  explicit ServersModel(const std::wstring& configurationArgument);

  // The names that are listed. Where a name is not located, the rest of its address book is lost,
  // where a match is not, the matches from that on; where a text is not told, that one is.
  std::set<std::string> ServersWith(const FaultCase& fault) const;

 private:
  using Match = std::array<std::string, 2>;

  std::vector<std::vector<Match>> books_;
};

}  // namespace larkspan::torture
