// Numbers as texts.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace larkspan::torture {

// A note ID as it stands in file names and log lines.
inline std::string NoteIdText(std::uint32_t noteId) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(noteId));
  return text;
}

inline std::string HexText(std::uint16_t status) {
  char text[7];
  std::snprintf(text, sizeof text, "0x%04X", static_cast<unsigned>(status));
  return text;
}

}  // namespace larkspan::torture
