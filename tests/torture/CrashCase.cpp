#include "tests/torture/CrashCase.h"

#include <nlohmann/json.hpp>
#include <random>

#include "tests/torture/Parts.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;

const std::vector<Death>& Deaths() {
  static const std::vector<Death> deaths = {{"accessViolation", {0xC0000005}},
                                            {"stackOverflow", {0xC00000FD, 3}},
                                            {"exit", {1}},
                                            {"abort", {3}},
                                            {"throw", {0, 3}}};
  return deaths;
}

// Seldom the same number, where there are more than two.
std::set<int> CallsToStrike(int count, std::mt19937& random) {
  std::set<int> calls = {1, count};
  if (count > 2) calls.insert(2 + static_cast<int>(random() % static_cast<unsigned>(count - 2)));
  return calls;
}

}  // namespace

std::string PlanOf(const CrashCase& crash) {
  json fault = {{"entry", crash.entry}, {"call", crash.call}, {"action", crash.death.action}};
  if (crash.afterAPart) fault[PartsOf(crash.entry)] = 1;
  return json::array({fault}).dump();
}

std::string Describe(const CrashCase& crash) {
  return crash.death.action + " in " + crash.entry + " call " + std::to_string(crash.call) +
         (crash.afterAPart ? " after one of its " + PartsOf(crash.entry) : "");
}

bool IsCore(const CrashCase& crash) {
  return crash.entry == "DXLExportNote" && crash.call != 1 &&
         crash.death.action == "accessViolation";
}

std::vector<CrashCase> CrashCases(const std::map<std::string, int>& calls, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<CrashCase> cases;
  for (const Death& death : Deaths()) {
    for (const auto& [entry, count] : calls) {
      for (const int call : CallsToStrike(count, random)) {
        cases.push_back({entry, call, death});
        if (!PartsOf(entry).empty()) cases.push_back({entry, call, death, true});
      }
    }
  }
  return cases;
}

}  // namespace larkspan::torture
