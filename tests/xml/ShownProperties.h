// The properties of a database, read from db.dxl and from the database file.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <string>

#include "tests/support/xml/Xml.h"

namespace larkspan {

struct ShownProperties {
  XmlAttributes attributes;      // of the root element
  XmlAttributes infoAttributes;  // of the element for the database's figures, but the next one
  double percentUsed = 0;
  std::string dataModified;  // as a database file writes date-times, with hundredths
  std::string designModified;

  bool operator==(const ShownProperties&) const = default;
};

// What tests print where properties differ.
std::ostream& operator<<(std::ostream& out, const ShownProperties& properties);

// Reads a db.dxl. Throws std::exception for what no such file holds.
ShownProperties ReadShownProperties(const std::string& file);

// What db.dxl must tell of a database with this file name and of this many bytes.
ShownProperties DatabaseProperties(const nlohmann::json& database, const std::string& fileName,
                                   std::uintmax_t fileBytes);

}  // namespace larkspan
