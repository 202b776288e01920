// The list of names is the library's own layout, byte for byte; two of its bytes have no meaning
// and stay as the memory has them.
#include "notes/Database.h"

#include <cstring>

#include "notes/Handles.h"
#include "notes/Identity.h"
#include "notes/Memory.h"
#include "notes/StatusCodes.h"
#include "notes/Text.h"

namespace larkspan {

namespace {

// Layout of a list of names with one name: a count, eight zero bytes, two bytes without meaning,
// the authentication word, the name and its NUL.
constexpr std::size_t kCountOffset = 0;
constexpr std::size_t kZeroOffset = 2;
constexpr std::size_t kZeroBytes = 8;
constexpr std::size_t kAuthenticationOffset = 12;
constexpr std::size_t kNameOffset = 16;

void FillNamesList(std::byte* list, const std::string& name) {
  const notes_api::WORD count = 1;
  const notes_api::DWORD authentication = 7;
  std::memcpy(list + kCountOffset, &count, sizeof count);
  std::memset(list + kZeroOffset, 0, kZeroBytes);
  std::memcpy(list + kAuthenticationOffset, &authentication, sizeof authentication);
  std::memcpy(list + kNameOffset, name.c_str(), name.size() + 1);
}

Status MakeNamesList(const std::string& name, MemoryObject& list) {
  const Status status = AllocateMemory(kNameOffset + name.size() + 1, list);
  if (!status.ok()) return status;
  const MemoryLock lock(list);
  if (lock.address() == nullptr) return kMemoryNotLocked;
  FillNamesList(lock.address(), name);
  return Status();
}

}  // namespace

Status PathToNotes(std::wstring_view path, std::string& notes) {
  return WideToNotes(path, notes) ? Status() : kPathNotTranslated;
}

Status OpenDatabase(const std::string& path, Database& database) {
  return AcquireHandle(database, [&](notes_api::DHANDLE* address) {
    return notes_api::NSFDbOpen(path.c_str(), address);
  });
}

Status OpenDatabaseFullAccess(const std::string& path, Database& database) {
  constexpr notes_api::WORD kOptions = 0;
  std::string userName;
  if (const Status status = GetCurrentUserName(userName); !status.ok()) return status;
  MemoryObject namesList;
  if (const Status status = MakeNamesList(userName, namesList); !status.ok()) return status;
  notes_api::TIMEDATE dataModified{};
  notes_api::TIMEDATE otherModified{};
  return AcquireHandle(database, [&](notes_api::DHANDLE* address) {
    return notes_api::NSFDbOpenExtended(path.c_str(), kOptions, namesList.get(), nullptr, address,
                                        &dataModified, &otherModified);
  });
}

}  // namespace larkspan
