#include "standin/StandinHooks.h"

#include <nlohmann/json.hpp>
#include <string>

#include "standin/Runtime.h"

namespace {

using larkspan::standin::TheRuntime;

}  // namespace

void LARKSPAN_NOTES_CALL StandinReset() { larkspan::standin::ResetRuntime(); }

const char* LARKSPAN_NOTES_CALL StandinLedgerJson() {
  static std::string text;
  text = larkspan::standin::CurrentLedgerText();
  return text.c_str();
}

void LARKSPAN_NOTES_CALL StandinSetFaults(const char* plan) {
  const auto faults = nlohmann::json::parse(plan, nullptr, false);
  larkspan::standin::Require(faults.is_array(), "a fault plan is an array");
  TheRuntime().faults.Clear();
  TheRuntime().faults.Add(faults, "fault plan");
}

std::uint32_t LARKSPAN_NOTES_CALL StandinOpenCount() {
  const nlohmann::json ledger = TheRuntime().LedgerJson();
  std::uint32_t total = 0;
  for (const auto& count : ledger.at("open")) total += count.get<std::uint32_t>();
  return total;
}
