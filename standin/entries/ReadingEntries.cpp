// The entry point that reads the index of a view.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr WORD kNext = 1;  // navigator
constexpr DWORD kReadMask = 0xC0F9;
constexpr std::size_t kBufferSize = 65535;

// How a caller wants to read.
struct Wanted {
  WORD skipNavigator;
  DWORD skipCount;
  WORD returnNavigator;
  DWORD returnCount;
  DWORD mask;
};

// The entries of one reading.
struct Reading {
  Bytes bytes;
  DWORD skipped = 0;
  DWORD returned = 0;
  IndexPosition last;
  bool isComplete = true;
};

void Record(Runtime& runtime, NOTEID view, const Wanted& wanted) {
  runtime.ledger.RecordLast("NIFReadEntries", {{"view", view},
                                               {"skipNavigator", wanted.skipNavigator},
                                               {"skipCount", wanted.skipCount},
                                               {"returnNavigator", wanted.returnNavigator},
                                               {"returnCount", wanted.returnCount},
                                               {"mask", wanted.mask}});
}

// The one way of reading that programs use: every entry in order, with all of its parts.
void RequireKnownWay(const Wanted& wanted) {
  Require(wanted.skipNavigator == kNext && wanted.returnNavigator == kNext, "unknown navigator");
  Require(wanted.skipCount == 1, "only one entry can be skipped");
  Require(wanted.mask == kReadMask, "unknown read mask");
}

IndexPosition PositionOf(const CollectionPosition& position) {
  Require(position.level < kMaxLevels, "the position has too many levels");
  Require(position.minLevel == 0 && position.maxLevel == 0, "the position has limits");
  return {position.tumbler, position.tumbler + position.level + 1};
}

void SetPosition(const IndexPosition& from, CollectionPosition* position) {
  position->level = static_cast<WORD>(from.size() - 1);
  std::copy(from.begin(), from.end(), position->tumbler);
}

// Where a reading starts that skips the entry of the position. The start, level 0 with a tumbler of
// 0, stands in front of the first entry.
STATUS FirstToRead(const View& view, const IndexPosition& position, std::size_t* first) {
  *first = 0;
  if (position == IndexPosition{0}) return kSuccess;
  const auto found = view.IndexOf(position);
  if (!found) return kNoSuchPosition;
  *first = *found + 1;
  return kSuccess;
}

// As many as fit into a buffer. A first one that does not fit is an error: nothing would get past
// it.
STATUS ReadFrom(const View& view, std::size_t first, DWORD most, Reading* reading) {
  reading->skipped = first < view.entryCount() ? 1 : 0;
  for (std::size_t i = first; i < view.entryCount(); ++i) {
    const ViewEntry entry = view.EntryAt(i);
    if (entry.bytes.size() > kBufferSize && reading->returned == 0) return kEntryTooLarge;
    reading->isComplete =
        reading->bytes.size() + entry.bytes.size() <= kBufferSize && reading->returned < most;
    if (!reading->isComplete) return kSuccess;
    AppendBytes(&reading->bytes, entry.bytes);
    reading->last = entry.position;
    ++reading->returned;
  }
  return kSuccess;
}

// The caller's to free; zero when there is nothing in it.
DHANDLE BufferWith(Runtime& runtime, const Bytes& bytes) {
  if (bytes.empty()) return 0;
  auto memory = std::make_unique<MemoryObject>(bytes.size(), false);
  std::copy(bytes.begin(), bytes.end(), memory->bytes());
  return runtime.memory.Add(std::move(memory));
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NIFReadEntries(HCOLLECTION collection, CollectionPosition* position,
                                          WORD skipNavigator, DWORD skipCount, WORD returnNavigator,
                                          DWORD returnCount, DWORD mask, DHANDLE* buffer,
                                          WORD* bufferLength, DWORD* skipped, DWORD* returned,
                                          WORD* signalFlags) {
  const Call call("NIFReadEntries", {.collection = collection});
  if (call.stops()) return call.status();
  const OpenCollection& opened = call.runtime().collections.Get(collection);
  const Wanted wanted = {skipNavigator, skipCount, returnNavigator, returnCount, mask};
  Record(call.runtime(), opened.view, wanted);
  Require(position != nullptr && buffer != nullptr && bufferLength != nullptr &&
              skipped != nullptr && returned != nullptr && signalFlags != nullptr,
          "there is no place for a result");
  RequireKnownWay(wanted);
  std::size_t first = 0;
  Reading reading;
  STATUS status = FirstToRead(*opened.entries, PositionOf(*position), &first);
  if (status == kSuccess) status = ReadFrom(*opened.entries, first, returnCount, &reading);
  if (status != kSuccess) return status;
  if (reading.returned != 0) SetPosition(reading.last, position);
  *buffer = BufferWith(call.runtime(), reading.bytes);
  *bufferLength = static_cast<WORD>(reading.bytes.size());
  *skipped = reading.skipped;
  *returned = reading.returned;
  *signalFlags = reading.isComplete ? WORD{0} : kSignalMoreToDo;
  return kSuccess;
}

}  // namespace larkspan::notes_api
