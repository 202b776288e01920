// Entry points for memory objects, which also reach the pools of item values.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

STATUS LARKSPAN_NOTES_CALL OSMemAlloc(WORD type, DWORD size, DHANDLE* memory) {
  const Call call("OSMemAlloc");
  if (call.stops()) return call.status();
  Require(memory != nullptr, "there is no place for the handle");
  call.runtime().ledger.RecordLast("OSMemAlloc", {{"type", type}, {"size", size}});
  *memory = call.runtime().memory.Add(std::make_unique<MemoryObject>(size, false));
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL OSMemFree(DHANDLE memory) {
  const Call call("OSMemFree");
  if (call.stops()) return call.status();
  const MemoryObject& object = call.runtime().memory.Get(memory);
  Require(!object.isLibraryOwned(), "the memory belongs to the library");
  object.RequireReleasable();
  call.runtime().memory.Remove(memory);
  return kSuccess;
}

void* LARKSPAN_NOTES_CALL OSLockObject(DHANDLE memory) {
  const Call call("OSLockObject");
  if (call.stops()) return nullptr;
  return call.runtime().memory.Get(memory).Lock();
}

BOOL LARKSPAN_NOTES_CALL OSUnlockObject(DHANDLE memory) {
  const Call call("OSUnlockObject");
  if (call.stops()) return 0;
  call.runtime().memory.Get(memory).Unlock();
  return 1;
}

}  // namespace larkspan::notes_api
