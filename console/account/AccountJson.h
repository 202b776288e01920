// The account as JSON, both ways; within the room only.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "console/account/Account.h"

namespace larkspan::console {

using Json = nlohmann::ordered_json;

Json AccountToJson(const Account& account);
Json LossToJson(const Loss& loss);
Json FindingToJson(const Finding& finding);
Json WarningToJson(const Warning& warning);

// These throw what the JSON library throws, or std::invalid_argument, where the form is another.
Account AccountFromJson(const Json& json);
Loss LossFromJson(const Json& json);
Warning WarningFromJson(const Json& json);

// A note's ID as text, and back; no member where there is none.
void PutId(Json& json, const char* name, const std::optional<std::uint32_t>& id);
std::optional<std::uint32_t> TakeId(const Json& json, const char* name);

// The text of it. Names and causes come from elsewhere: bytes that are no UTF-8 become U+FFFD.
std::string JsonText(const Json& json, int indent);

}  // namespace larkspan::console
