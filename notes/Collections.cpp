// One read gives as many entries as fit and says whether there are more. A read that gives none and
// does not move on would repeat for ever, and counts as failed.
#include "notes/Collections.h"

#include <cstring>

#include "notes/Handles.h"
#include "notes/LibraryFunctions.h"
#include "notes/Memory.h"

namespace larkspan {

namespace {

using notes_api::CollectionPosition;
using notes_api::DWORD;
using notes_api::WORD;

Status Open(const Database& database, std::uint32_t viewId, WORD flags, Collection& collection) {
  return AcquireHandle(collection, [&](notes_api::HCOLLECTION* address) {
    return notes_api::NIFOpenCollection(database.get(), database.get(), viewId, flags, 0, address,
                                        nullptr, nullptr, nullptr, nullptr);
  });
}

// What one read gives besides its status.
struct Reading {
  MemoryObject buffer;
  WORD bufferLength = 0;
  DWORD returned = 0;
  WORD signals = 0;

  bool HasMore() const { return (signals & notes_api::kSignalMoreToDo) != 0; }
};

Status ReadOnce(const Collection& collection, CollectionPosition& position, Reading& reading) {
  constexpr WORD kNextEntry = 1;
  constexpr DWORD kOneEntry = 1;
  constexpr DWORD kAsManyAsFit = 0xFFFFFFFF;
  constexpr DWORD kMask = 0xC0F9;
  DWORD skipped = 0;
  return AcquireHandle(reading.buffer, [&](notes_api::DHANDLE* address) {
    return notes_api::NIFReadEntries(collection.get(), &position, kNextEntry, kOneEntry, kNextEntry,
                                     kAsManyAsFit, kMask, address, &reading.bufferLength, &skipped,
                                     &reading.returned, &reading.signals);
  });
}

bool VisitReading(const Reading& reading, const std::function<bool(const EntryBatch&)>& visit) {
  if (reading.buffer.get() == 0) return true;
  const MemoryLock lock(reading.buffer);
  if (lock.address() == nullptr) return false;
  return visit({reading.returned, Bytes(lock.address(), reading.bufferLength)});
}

// A read that promises more, gives nothing and stays where it was would go on for ever.
bool StandsStill(const Reading& reading, const CollectionPosition& before,
                 const CollectionPosition& after) {
  return reading.returned == 0 && std::memcmp(&before, &after, sizeof before) == 0;
}

}  // namespace

Status OpenCollection(const Database& database, std::uint32_t viewId, Collection& collection) {
  constexpr WORD kBuild = 0;
  return Open(database, viewId, kBuild, collection);
}

Status OpenExistingCollection(const Database& database, std::uint32_t viewId,
                              Collection& collection) {
  constexpr WORD kDoNotBuildNorUpdate = 0x0006;
  return Open(database, viewId, kDoNotBuildNorUpdate, collection);
}

bool ReadEntries(const Collection& collection,
                 const std::function<bool(const EntryBatch&)>& visit) {
  CollectionPosition position{};
  while (true) {
    const CollectionPosition before = position;
    Reading reading;
    if (!ReadOnce(collection, position, reading).ok()) return false;
    if (!VisitReading(reading, visit)) return false;
    if (!reading.HasMore()) return true;
    if (StandsStill(reading, before, position)) return false;
  }
}

Status PurgeCollection(const Database& database, std::uint32_t viewId) {
  return Status(FoundLibraryFunctions().purgeCollection(database.get(), database.get(), viewId));
}

}  // namespace larkspan
