// Entry points that read structures of the file into memory.
#include <cstring>

#include "notes/NotesApi.h"
#include "standin/ViewFormat.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

// Several structures follow each other in the file and in memory. The source moves on by what was
// read from the file.
void LARKSPAN_NOTES_CALL ODSReadMemory(void** source, WORD kind, void* out, WORD count) {
  const Call call("ODSReadMemory");
  if (call.stops()) return;
  Require(source != nullptr, "there is nothing to read");
  Require(out != nullptr, "there is no place for the structures");
  const std::size_t length = FileLength(kind);
  auto* from = static_cast<BYTE*>(*source);
  call.runtime().RequireReadable(from, count * length);
  auto* to = static_cast<BYTE*>(out);
  for (WORD i = 0; i < count; ++i, from += length) {
    const Bytes structure = InMemory(kind, from);
    std::memcpy(to, structure.data(), structure.size());
    to += structure.size();
  }
  *source = from;
}

WORD LARKSPAN_NOTES_CALL ODSLength(WORD kind) {
  const Call call("ODSLength");
  if (call.stops()) return 0;
  return static_cast<WORD>(FileLength(kind));
}

}  // namespace larkspan::notes_api
