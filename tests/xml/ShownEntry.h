// The entries of a view, read from its file and from the database.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/xml/Xml.h"
#include "tests/xml/ShownValue.h"

namespace larkspan {

struct ShownEntry {
  std::string element;
  XmlAttributes attributes;
  std::vector<ShownValue> values;

  bool operator==(const ShownEntry&) const = default;
};

// What tests print where entries differ.
std::ostream& operator<<(std::ostream& out, const ShownEntry& entry);

// Reads a view's file. Throws std::runtime_error for what no view's file holds.
std::vector<ShownEntry> ReadShownEntries(const std::string& file);

// What the file of this view note must show; see RemainsOf for damaged ones.
std::vector<ShownEntry> DatabaseEntries(const nlohmann::json& viewNote);

}  // namespace larkspan
