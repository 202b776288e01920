#include "tests/torture/Outcome.h"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/support/FileBytes.h"
#include "tests/support/StandinLibrary.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;
using testing::OutputTree;

std::map<std::string, int> Counts(const json& ledger, const char* member) {
  std::map<std::string, int> counts;
  const json all = ledger.value(member, json::object());
  for (const auto& [name, count] : all.items()) {
    if (count != 0) counts[name] = count;
  }
  return counts;
}

// A full disk can leave the last line without its end; no check takes such a line for a whole one.
Lines LinesIn(const std::string& text) {
  const std::size_t end = text.rfind("\r\n");
  const std::size_t wholeBytes = end == std::string::npos ? 0 : end + 2;
  Lines lines = SplitLines(text.substr(0, wholeBytes));
  if (wholeBytes != text.size()) lines.push_back("torn: " + text.substr(wholeBytes));
  return lines;
}

}  // namespace

Lines LinesOf(const OutputTree& tree, const std::string& name) {
  const auto found = tree.find(name);
  return found == tree.end() ? Lines() : LinesIn(found->second);
}

Outcome ReadOutcome(const std::wstring& output) {
  Outcome outcome;
  outcome.tree = testing::ReadOutputTree(output);
  outcome.log = LinesOf(outcome.tree, "log.txt");
  const auto audit = outcome.tree.find("audit.txt");
  if (audit == outcome.tree.end()) return outcome;
  audit->second = testing::MaskAuditTimes(audit->second);
  outcome.audit = LinesIn(audit->second);
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
