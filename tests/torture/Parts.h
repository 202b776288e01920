// Calls that hand something over piece by piece, and can fail in between.
#pragma once

#include <string>

namespace larkspan::torture {

// The word of a fault plan for what the entry point hands over; empty when it hands over nothing.
inline std::string PartsOf(const std::string& entry) {
  if (entry == "DXLExportNote" || entry == "DXLExportACL") return "chunks";
  if (entry == "NSFSearch" || entry == "NSFSearchExtended3") return "matches";
  return "";
}

}  // namespace larkspan::torture
