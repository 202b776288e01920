#include "tests/torture/CrashCase.h"

#include <nlohmann/json.hpp>

#include "tests/torture/Parts.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;

const std::vector<Death>& Deaths() {
  static const std::vector<Death> deaths = {{"accessViolation", {0xC0000005}},
                                            {"stackOverflow", {0xC00000FD, 3}},
                                            {"exit", {1}},
                                            {"exit", {0}, 0},
                                            {"abort", {3}},
                                            {"throw", {0, 3}}};
  return deaths;
}

// The last export of a note that crashes, and the first one that does so in its turn.
bool BelongsToEverySample(const CrashCase& crash, int count) {
  const int endOfFirstTurn = 1 + static_cast<int>(Deaths().size());
  return crash.entry == "DXLExportNote" && crash.death.action == Deaths().front().action &&
         crash.call != 1 && (crash.call == count || crash.call <= endOfFirstTurn);
}

std::vector<Death> DeathsIn(int call, int count, std::uint32_t seed) {
  if (call == 1 || call == count) return Deaths();
  return {Deaths()[(seed + static_cast<std::uint32_t>(call)) % Deaths().size()]};
}

void AddCases(CrashCase crash, int count, std::vector<CrashCase>& cases) {
  crash.isCore = BelongsToEverySample(crash, count);
  cases.push_back(crash);
  if (PartsOf(crash.entry).empty()) return;
  crash.afterAPart = true;
  cases.push_back(crash);
}

}  // namespace

std::string PlanOf(const CrashCase& crash) {
  json fault = {{"entry", crash.entry}, {"call", crash.call}, {"action", crash.death.action}};
  if (crash.death.exitArgument) fault["code"] = *crash.death.exitArgument;
  if (crash.afterAPart) fault[PartsOf(crash.entry)] = 1;
  return json::array({fault}).dump();
}

std::string Describe(const CrashCase& crash) {
  const auto& argument = crash.death.exitArgument;
  return crash.death.action + (argument ? " with " + std::to_string(*argument) : std::string()) +
         " in " + crash.entry + " call " + std::to_string(crash.call) +
         (crash.afterAPart ? " after one of its " + PartsOf(crash.entry) : "");
}

std::vector<CrashCase> CrashCases(const std::map<std::string, int>& calls, std::uint32_t seed) {
  std::vector<CrashCase> cases;
  for (const auto& [entry, count] : calls) {
    for (int call = 1; call <= count; ++call) {
      for (const Death& death : DeathsIn(call, count, seed)) {
        AddCases({.entry = entry, .call = call, .death = death}, count, cases);
      }
    }
  }
  return cases;
}

}  // namespace larkspan::torture
