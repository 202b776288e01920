// The one database, and its notes by their numbers.
#include <cstring>

#include "bench/library/Entries.h"

namespace larkspan::notes_api {

using bench::kSuccess;
using bench::ProcessWorkload;

namespace {

// Both tables hold consecutive note IDs; what is inserted is in its order, and without gaps.
struct Range {
  NOTEID first = 0;
  DWORD count = 0;
};

Range inserted;

Range RangeOf(DHANDLE table) {
  if (table == bench::kViewTable) return {bench::kFirstView, ProcessWorkload().views};
  return inserted;
}

SearchMatch MatchOf(NOTEID noteId) {
  SearchMatch match{};
  match.noteId = noteId;
  match.noteClass = 1;
  return match;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFDbOpen(const char*, DHANDLE* database) {
  *database = bench::kDatabase;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbOpenExtended(const char*, WORD, DHANDLE, TIMEDATE*, DHANDLE*,
                                             TIMEDATE*, TIMEDATE*) {
  return bench::kNotHere;
}

STATUS LARKSPAN_NOTES_CALL NSFDbClose(DHANDLE) { return kSuccess; }

STATUS LARKSPAN_NOTES_CALL NSFDbPathGet(DHANDLE, char* canonicalPath, char*) {
  if (canonicalPath != nullptr) std::strcpy(canonicalPath, "bench.nsf");
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbReplicaInfoGet(DHANDLE, ReplicaInfo* info) {
  *info = {};
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbIDGet(DHANDLE, DatabaseId* id) {
  *id = {};
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbInfoGet(DHANDLE, char* info) {
  std::strcpy(info, "Bench");
  return kSuccess;
}

// All of it is the title.
void LARKSPAN_NOTES_CALL NSFDbInfoParse(const char* info, WORD field, char* out, WORD limit) {
  const std::size_t length = field == kInfoTitle ? std::strlen(info) : 0;
  out[bench::CopyText(info, length, out, limit)] = '\0';
}

STATUS LARKSPAN_NOTES_CALL NSFDbModifiedTime(DHANDLE, TIMEDATE* data, TIMEDATE* other) {
  *data = *other = {};
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbSpaceUsageScaled(DHANDLE, DWORD* allocatedGranules,
                                                 DWORD* freeGranules, DWORD* granuleBytes) {
  *allocatedGranules = 1024;
  *freeGranules = 0;
  *granuleBytes = 1024;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbQuotaGet(const char*, QuotaInfo* quota) {
  *quota = {};
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbGetModifiedNoteTable(DHANDLE, WORD, TIMEDATE, TIMEDATE*,
                                                     DHANDLE* table) {
  *table = bench::kViewTable;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFSearchExtended3(DHANDLE, DHANDLE, DHANDLE, DWORD, char*, DWORD, DWORD,
                                              DWORD, DWORD, DWORD, WORD, TIMEDATE*,
                                              SearchCallback callback, void* context, TIMEDATE*,
                                              DHANDLE) {
  for (NOTEID number = 0; number < ProcessWorkload().notes; ++number) {
    SearchMatch match = MatchOf(ProcessWorkload().firstNote + number);
    callback(context, &match, nullptr);
  }
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL IDCreateTable(DWORD, DHANDLE* table) {
  *table = bench::kNoteTable;
  inserted = {};
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL IDDestroyTable(DHANDLE) { return kSuccess; }

STATUS LARKSPAN_NOTES_CALL IDInsert(DHANDLE, NOTEID noteId, BOOL*) {
  if (inserted.count++ == 0) inserted.first = noteId;
  return kSuccess;
}

BOOL LARKSPAN_NOTES_CALL IDScan(DHANDLE table, BOOL first, NOTEID* noteId) {
  const Range range = RangeOf(table);
  *noteId = first != 0 ? range.first : *noteId + 1;
  return *noteId - range.first < range.count ? 1 : 0;
}

DWORD LARKSPAN_NOTES_CALL IDEntries(DHANDLE table) { return RangeOf(table).count; }

}  // namespace larkspan::notes_api
