#include "tests/torture/Outcome.h"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/FileBytes.h"
#include "tests/support/StandinLibrary.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;

std::map<std::string, int> Counts(const json& ledger, const char* member) {
  std::map<std::string, int> counts;
  const json all = ledger.value(member, json::object());
  for (const auto& [name, count] : all.items()) {
    if (count != 0) counts[name] = count;
  }
  return counts;
}

}  // namespace

Outcome ReadOutcome(const std::wstring& output) {
  Outcome outcome;
  outcome.tree = testing::ReadOutputTree(output);
  outcome.log = LinesOf(outcome.tree, "log.txt");
  const auto audit = outcome.tree.find("audit.txt");
  if (audit == outcome.tree.end()) return outcome;
  audit->second = testing::MaskAuditTimes(audit->second);
  outcome.audit = testing::LinesIn(audit->second);
  return outcome;
}

Outcome TakeOutcome(const std::wstring& output) {
  Outcome outcome = ReadOutcome(output);
  const json ledger = json::parse(StandinLedger());
  outcome.calls = Counts(ledger, "calls");
  outcome.leftOpen = Counts(ledger, "open");
  std::filesystem::remove_all(output);
  return outcome;
}

}  // namespace larkspan::torture
