// The limits handed to the library leave room for its NUL; the second item has no name, since the
// library is asked for two.
#include "notes/AddressBook.h"

#include <array>

#include "notes/Handles.h"
#include "notes/Memory.h"
#include "notes/NotesApi.h"
#include "notes/StatusCodes.h"
#include "notes/Text.h"

namespace larkspan {

namespace {

using notes_api::WORD;

// The NUL may stand one byte past the limit.
constexpr WORD kNameLimit = 255;
using NameBuffer = std::array<char, kNameLimit + 1>;

constexpr WORD kItemCount = 2;

std::string NameOf(const NameBuffer& name) { return EndedText(std::span(name).first(kNameLimit)); }

// One item name and, behind its NUL, an empty one.
std::string ItemList(std::string_view item) { return std::string(item) + '\0'; }

Status LookUp(const char* server, std::string_view nameSpace, std::string_view item,
              MemoryObject& result) {
  constexpr WORD kFlags = 1;
  constexpr WORD kOne = 1;
  const std::string nameSpaces(nameSpace);
  const std::string items = ItemList(item);
  return AcquireHandle(result, [&](notes_api::DHANDLE* address) {
    return notes_api::NAMELookup(server, kFlags, kOne, nameSpaces.c_str(), kOne, "", kItemCount,
                                 items.c_str(), address);
  });
}

// What cannot be read of an item is as good as empty.
Status VisitItems(void* match, const ItemVisitor& visit) {
  for (WORD item = 0; item < kItemCount; ++item) {
    NameBuffer text{};
    notes_api::NAMEGetTextItem(match, item, 0, text.data(), kNameLimit);
    if (const Status status = visit(NameOf(text)); !status.ok()) return status;
  }
  return Status();
}

Status VisitMatches(void* result, const ItemVisitor& visit) {
  WORD matches = 0;
  void* name = notes_api::NAMELocateNextName(result, nullptr, &matches);
  if (name == nullptr) return Status();
  void* match = nullptr;
  for (WORD i = 0; i < matches; ++i) {
    match = notes_api::NAMELocateNextMatch(result, name, match);
    if (match == nullptr) break;
    if (const Status status = VisitItems(match, visit); !status.ok()) return status;
  }
  return Status();
}

}  // namespace

bool GetMailServer(std::string& server) {
  NameBuffer value{};
  const bool isSet = notes_api::OSGetEnvironmentString("MailServer", value.data(), kNameLimit) != 0;
  server = NameOf(value);
  return isSet;
}

Status AbbreviateName(const std::string& name, std::string& abbreviated) {
  constexpr notes_api::DWORD kFlags = 0;
  NameBuffer text{};
  const Status status(
      notes_api::DNAbbreviate(kFlags, nullptr, name.c_str(), text.data(), kNameLimit, nullptr));
  abbreviated = NameOf(text);
  return status;
}

Status LookUpServers(const char* server, std::string_view nameSpace, std::string_view item,
                     const ItemVisitor& visit) {
  MemoryObject result;
  if (const Status status = LookUp(server, nameSpace, item, result); !status.ok()) return status;
  const MemoryLock lock(result);
  if (lock.address() == nullptr) return kMemoryNotLocked;
  return VisitMatches(lock.address(), visit);
}

}  // namespace larkspan
