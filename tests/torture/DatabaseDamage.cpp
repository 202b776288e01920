#include "tests/torture/DatabaseDamage.h"

#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/FileBytes.h"
#include "tests/torture/FaultCase.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;

constexpr int kEveryExport = 1000;

// Numbers stand as such or as text, which begins with "0x" or is the eight digits of a note ID.
std::uint32_t NumberOf(const json& value) {
  if (value.is_number()) return value.get<std::uint32_t>();
  return static_cast<std::uint32_t>(std::stoul(value.get<std::string>(), nullptr, 16));
}

void Add(const json& fault, NoteDamage& damage) {
  const auto status = static_cast<std::uint16_t>(NumberOf(fault.value("status", json(0))));
  if (IsDamage(status)) damage.exports += fault.contains("call") ? 1 : kEveryExport;
  if (status == kFormNeedsRepair) damage.needsRepair = true;
}

}  // namespace

std::map<std::uint32_t, NoteDamage> DamageIn(const Subject& subject) {
  std::map<std::uint32_t, NoteDamage> damages;
  const json database = json::parse(ReadBytes(subject.dataFolder + L"\\" + subject.database));
  for (const json& fault : database.value("faults", json::array())) {
    if (fault.at("entry") != "DXLExportNote" || !fault.contains("note")) continue;
    Add(fault, damages[NumberOf(fault.at("note"))]);
  }
  return damages;
}

}  // namespace larkspan::torture
