#include "standin/Ledger.h"

#include <string>
#include <utility>

namespace larkspan::standin {

namespace {

constexpr std::size_t kTracedCalls = 400;
constexpr std::size_t kRecordedCalls = 400;

}  // namespace

// A start traces from its own call on, which was counted before the configuration was read.
void Ledger::Count(std::string_view entry) {
  ++calls_[entry];
  if (order_.size() < kTracedCalls) order_.push_back(entry);
}

void Ledger::RecordLast(std::string_view entry, nlohmann::json arguments) {
  arguments_[std::string(entry)] = std::move(arguments);
}

void Ledger::RecordNext(std::string_view entry, nlohmann::json arguments) {
  nlohmann::json& list = arguments_[std::string(entry)];
  if (list.size() < kRecordedCalls) list.push_back(std::move(arguments));
}

nlohmann::json Ledger::ToJson() const {
  nlohmann::json calls = nlohmann::json::object();
  for (const auto& [entry, count] : calls_) calls[std::string(entry)] = count;
  nlohmann::json all = {{"calls", calls}, {"arguments", arguments_}};
  if (traces_) all["order"] = order_;
  return all;
}

}  // namespace larkspan::standin
