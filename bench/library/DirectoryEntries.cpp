// A data directory of databases that differ in their numbers. The values of all summaries stand in
// one place, and a summary is nothing but the question for them.
#include <cstring>
#include <string>

#include "bench/Content.h"
#include "bench/library/Entries.h"

namespace larkspan::notes_api {

using bench::kNotHere;
using bench::kSuccess;

namespace {

std::string& DatabasePath() {
  static std::string path(bench::kDatabasePath);
  return path;
}

template <typename Value>
BOOL Found(const Value* at, std::size_t size, WORD valueType, void** value, WORD* length,
           WORD* type) {
  *value = const_cast<Value*>(at);
  *length = static_cast<WORD>(size);
  *type = valueType;
  return 1;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFSearch(DHANDLE, DHANDLE, char*, WORD, WORD, TIMEDATE*,
                                     SearchCallback callback, void* context, TIMEDATE*) {
  SearchMatch match{};
  match.noteTime = {{bench::kDatabaseIdentifier[0], bench::kDatabaseIdentifier[1]}};
  ItemTable summary{};
  for (DWORD number = 1; number <= bench::ProcessWorkload().databases; ++number) {
    bench::WriteDigits(number, DatabasePath().data() + bench::kDatabasePathDigits);
    callback(context, &match, &summary);
  }
  return kSuccess;
}

// The entries of views have no conflicts.
BOOL LARKSPAN_NOTES_CALL NSFLocateSummaryValue(ItemTable*, const char* name, void** value,
                                               WORD* length, WORD* type) {
  static const TIMEDATE modified{{bench::kDatabaseTicks, bench::kDatabaseDay}};
  switch (name[1]) {
    case 'P':  // $Path
      return Found(DatabasePath().data(), DatabasePath().size(), kTypeText, value, length, type);
    case 'I':  // $Info
      return Found(bench::kDatabaseTitle.data(), bench::kDatabaseTitle.size(), kTypeText, value,
                   length, type);
    case 'N':  // $NONDATAMOD
      return Found(&modified, sizeof modified, kTypeTime, value, length, type);
    case 'L':  // $Length
      return Found(&bench::kDatabaseBytes, sizeof bench::kDatabaseBytes, kTypeNumber, value, length,
                   type);
    case 'D':  // $DATAMOD and $DAOSSTOREDBYTES
      if (name[3] == 'O') return 0;
      return Found(&modified, sizeof modified, kTypeTime, value, length, type);
    default:
      return 0;
  }
}

STATUS LARKSPAN_NOTES_CALL NAMELookup(const char*, WORD, WORD, const char*, WORD, const char*, WORD,
                                      const char*, DHANDLE*) {
  return kNotHere;
}

void* LARKSPAN_NOTES_CALL NAMELocateNextName(void*, void*, WORD*) { return nullptr; }

void* LARKSPAN_NOTES_CALL NAMELocateNextMatch(void*, void*, void*) { return nullptr; }

STATUS LARKSPAN_NOTES_CALL NAMEGetTextItem(void*, WORD, WORD, char*, WORD) { return kNotHere; }

STATUS LARKSPAN_NOTES_CALL DNAbbreviate(DWORD, const char*, const char*, char*, WORD, WORD*) {
  return kNotHere;
}

}  // namespace larkspan::notes_api
