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
      return "a collection";
    case HandleKind::kDatabase:
      return "a database";
    case HandleKind::kNote:
      return "a note";
    case HandleKind::kIdTable:
      return "an ID table";
    case HandleKind::kMemory:
      return "a memory";
    case HandleKind::kExporter:
      return "an exporter";
  }
  return "an unknown";
}

void FailOnHandle(notes_api::DHANDLE handle, HandleKind needed, bool wasGivenOut) {
  const std::string wanted = std::string(HandleKindName(needed)) + " handle";
  const std::string text = Hexadecimal(handle);
  if (handle == 0) StrictFailure("a zero handle was given, " + wanted + " is needed");
  if (wasGivenOut) StrictFailure(text + " is " + wanted + " that was closed already");
  const auto kind = static_cast<HandleKind>(handle & kHandleKindMask);
  StrictFailure(text + " is " + HandleKindName(kind) + " handle or none at all, " + wanted +
                " is needed");
}

}  // namespace larkspan::standin
