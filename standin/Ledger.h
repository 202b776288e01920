// What the program did with the library: calls of each entry point, the last arguments of some, and
// the order of the first calls. One thread calls.
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

namespace larkspan::standin {

class Ledger {
 public:
  // Entry names are literals: the ledger keeps no copy of them.
  void Count(std::string_view entry);

  // Keeps the order of the first calls too.
  void StartTrace() { traces_ = true; }

  // Replaces what was recorded for the entry point.
  void RecordLast(std::string_view entry, nlohmann::json arguments);

  // Adds to the list of what was recorded for the entry point.
  void RecordNext(std::string_view entry, nlohmann::json arguments);

  // The keys "calls", "arguments" and, with a trace, "order".
  nlohmann::json ToJson() const;

  void Clear() { *this = Ledger(); }

 private:
  std::map<std::string_view, std::uint64_t> calls_;
  nlohmann::json arguments_ = nlohmann::json::object();
  std::vector<std::string_view> order_;
  bool traces_ = false;
};

}  // namespace larkspan::standin
