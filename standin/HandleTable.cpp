#include "standin/HandleTable.h"

#include <cstdio>
#include <string>

namespace larkspan::standin {

namespace {

std::string Hexadecimal(notes_api::DHANDLE handle) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(handle));
  return text;
}

}  // namespace

const char* HandleKindName(HandleKind kind) {
  switch (kind) {
    case HandleKind::kCollection:
      return "collection";
    case HandleKind::kDatabase:
      return "database";
    case HandleKind::kNote:
      return "note";
    case HandleKind::kIdTable:
      return "ID table";
    case HandleKind::kMemory:
      return "memory";
    case HandleKind::kExporter:
      return "exporter";
  }
  return "unknown";
}

void FailOnHandle(notes_api::DHANDLE handle, HandleKind needed, bool wasGivenOut) {
  const std::string name = HandleKindName(needed);
  const std::string text = Hexadecimal(handle);
  if (handle == 0) StrictFailure("a zero handle was given, a " + name + " handle is needed");
  if (wasGivenOut) StrictFailure(name + " handle " + text + " was used after it was closed");
  const auto kind = static_cast<HandleKind>(handle & kHandleKindMask);
  StrictFailure(text + " is a " + HandleKindName(kind) + " handle or none at all, a " + name +
                " handle is needed");
}

}  // namespace larkspan::standin
