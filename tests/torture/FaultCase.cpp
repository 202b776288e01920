#include "tests/torture/FaultCase.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/torture/Parts.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;

// Others that the program reacts to in some place.
constexpr std::uint16_t kNoConfiguration = 0x1A5;
constexpr std::uint16_t kDamage[] = {1173, 0x3600, 0x361F};
constexpr std::uint16_t kDesignFailures[] = {6967, 6968};

const std::map<std::string, std::vector<std::string>> kRefusedAsWell = {
    {"NSFNoteClose", {"NSFDbClose"}},
    {"NIFCloseCollection", {"NSFDbClose"}},
    {"OSUnlockObject", {"OSMemFree", "NSFNoteClose", "NSFDbClose"}},
};

// Entry points whose status can mean something to the program.
const std::set<std::string> kWithMeaning = {
    "DXLExportNote", "DXLExportACL", "NSFNoteOpen",        "SECKFMOpen", "NSFNoteCipherDecrypt",
    "NSFDbOpen",     "NSFSearch",    "NSFSearchExtended3", "NAMELookup", "DNAbbreviate"};

std::string HexText(std::uint16_t status) {
  char text[7];
  std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(status));
  return text;
}

std::vector<std::uint16_t> StatusesOf(const std::string& entry) {
  std::vector<std::uint16_t> statuses = {kAnyStatus};
  if (entry == "NotesInitExtended") statuses.push_back(kNoConfiguration);
  if (kWithMeaning.contains(entry)) {
    statuses.insert(statuses.end(), std::begin(kDamage), std::end(kDamage));
    statuses.insert(statuses.end(), std::begin(kDesignFailures), std::end(kDesignFailures));
    statuses.push_back(kFormNeedsRepair);
  }
  return statuses;
}

void AddCases(FaultCase fault, std::vector<FaultCase>& cases) {
  for (const bool andAllLater : {false, true}) {
    fault.andAllLater = andAllLater;
    cases.push_back(fault);
  }
}

}  // namespace

std::string PlanOf(const FaultCase& fault) {
  json first = {{"entry", fault.entry},
                {fault.andAllLater ? "from" : "call", fault.call},
                {"status", fault.status}};
  if (fault.afterAPart) first[PartsOf(fault.entry)] = 1;
  json plan = json::array({first});
  const auto refused = kRefusedAsWell.find(fault.entry);
  if (refused != kRefusedAsWell.end()) {
    for (const std::string& entry : refused->second) {
      plan.push_back({{"entry", entry}, {"status", fault.status}});
    }
  }
  return plan.dump();
}

std::string Describe(const FaultCase& fault) {
  return fault.entry + " call " + std::to_string(fault.call) +
         (fault.andAllLater ? " and all later" : "") + " fails with " + HexText(fault.status) +
         (fault.afterAPart ? " after one of its " + PartsOf(fault.entry) : "");
}

bool IsCore(const FaultCase& fault) {
  return fault.call == 1 && !fault.andAllLater && fault.status == kAnyStatus && !fault.afterAPart;
}

std::vector<FaultCase> FaultCases(const std::map<std::string, int>& calls) {
  std::vector<FaultCase> cases;
  for (const auto& [entry, count] : calls) {
    for (int call = 1; call <= count; ++call) {
      for (const std::uint16_t status : StatusesOf(entry)) {
        AddCases({.entry = entry, .call = call, .status = status}, cases);
      }
      if (PartsOf(entry).empty()) continue;
      for (const std::uint16_t status : {kAnyStatus, kDamage[0], kDesignFailures[0]}) {
        AddCases({.entry = entry, .call = call, .status = status, .afterAPart = true}, cases);
      }
    }
  }
  return cases;
}

std::string FiguresOf(const std::map<std::string, int>& calls, std::size_t cases) {
  int all = 0;
  for (const auto& [entry, count] : calls) all += count;
  return std::to_string(calls.size()) + " entry points, " + std::to_string(all) + " calls, " +
         std::to_string(cases) + " cases";
}

bool IsDamage(std::uint16_t status) {
  return status == kDamage[0] || (status >= kDamage[1] && status <= kDamage[2]);
}

}  // namespace larkspan::torture
