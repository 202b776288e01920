// Entry points that open and close databases and tell where and how large they are.
#include <cstring>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/CharacterSet.h"
#include "standin/NamesList.h"
#include "standin/Paths.h"
#include "standin/StatusCodes.h"
#include "standin/Times.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

STATUS OpenFile(Runtime& runtime, bool hasFullAccess, OpenDatabase* opened) {
  const STATUS status = runtime.Load(opened->path, &opened->database);
  if (status != kSuccess) return status;
  opened->canonicalPath = opened->path;
  return opened->database->properties().fullAccessOnly && !hasFullAccess ? kNoAccess : kSuccess;
}

STATUS OpenFolder(Runtime& runtime, OpenDatabase* opened) {
  const STATUS status = runtime.LoadDirectory(opened->path, &opened->directory);
  if (status != kSuccess) return status;
  opened->canonicalPath = opened->directory->path().value_or(runtime.DirectoryPath(opened->path));
  return kSuccess;
}

// A path without a file opens the data directory itself.
STATUS OpenPath(Runtime& runtime, std::string_view path, bool hasFullAccess, DHANDLE* database) {
  Require(database != nullptr, "there is no place for the handle");
  auto opened = std::make_unique<OpenDatabase>();
  opened->path = path;
  const bool isFolder = SplitNetPath(path).file.empty();
  const STATUS status =
      isFolder ? OpenFolder(runtime, opened.get()) : OpenFile(runtime, hasFullAccess, opened.get());
  if (status != kSuccess) return status;
  *database = runtime.databases.Add(std::move(opened));
  return kSuccess;
}

// A directory has none.
TimePair LastModified(const OpenDatabase& opened) {
  return opened.database == nullptr ? TimePair() : opened.database->LastModified();
}

nlohmann::json RecordedNames(const std::optional<NamesList>& names) {
  if (!names) return nullptr;
  return {{"authentication", names->authentication}, {"name", NotesToUtf8(names->name)}};
}

std::optional<NamesList> ReadNames(const Runtime& runtime, DHANDLE handle) {
  if (handle == 0) return std::nullopt;
  return ReadNamesList(runtime.memory.Get(handle));
}

// Whether any open object names the database in that member.
template <typename T>
bool AnyUses(const HandleTable<T>& table, DHANDLE database, DHANDLE T::*member) {
  for (const auto& [handle, object] : table.objects()) {
    if ((*object).*member == database) return true;
  }
  return false;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFDbOpen(const char* path, DHANDLE* database) {
  const Call call("NSFDbOpen", {.path = PeekText(path, kPathSize)});
  if (call.stops()) return call.status();
  return OpenPath(call.runtime(), RequireText(path, kPathSize), false, database);
}

STATUS LARKSPAN_NOTES_CALL NSFDbOpenExtended(const char* path, WORD options, DHANDLE namesList,
                                             TIMEDATE* since, DHANDLE* database,
                                             TIMEDATE* dataModified, TIMEDATE* otherModified) {
  const Call call("NSFDbOpenExtended", {.path = PeekText(path, kPathSize)});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  const std::string_view text = RequireText(path, kPathSize);
  const std::optional<NamesList> names = ReadNames(runtime, namesList);
  runtime.ledger.RecordLast("NSFDbOpenExtended", {{"path", NotesToUtf8(text)},
                                                  {"options", options},
                                                  {"names", RecordedNames(names)},
                                                  {"hasSince", since != nullptr}});
  const bool hasFullAccess = names && names->authentication == kFullAccessAuthentication &&
                             names->name == runtime.userName;
  const STATUS status = OpenPath(runtime, text, hasFullAccess, database);
  if (status != kSuccess) return status;
  const TimePair modified = LastModified(runtime.databases.Get(*database));
  WriteIfWanted(dataModified, modified.data);
  WriteIfWanted(otherModified, modified.other);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbClose(DHANDLE database) {
  const Call call("NSFDbClose");
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.databases.Get(database);
  Require(!AnyUses(runtime.notes, database, &OpenNote::database),
          "a note of the database is still open");
  Require(!AnyUses(runtime.collections, database, &OpenCollection::viewDatabase) &&
              !AnyUses(runtime.collections, database, &OpenCollection::dataDatabase),
          "a collection of the database is still open");
  runtime.databases.Remove(database);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbPathGet(DHANDLE database, char* canonicalPath, char* expandedPath) {
  const Call call("NSFDbPathGet");
  if (call.stops()) return call.status();
  const OpenDatabase& opened = call.runtime().databases.Get(database);
  if (canonicalPath != nullptr) WriteTextWithNul(opened.canonicalPath, canonicalPath, kPathSize);
  if (expandedPath != nullptr) {
    WriteTextWithNul(call.runtime().ExpandedPath(opened.path), expandedPath, kPathSize);
  }
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbQuotaGet(const char* path, QuotaInfo* quota) {
  const Call call("NSFDbQuotaGet", {.path = PeekText(path, kPathSize)});
  if (call.stops()) return call.status();
  Require(quota != nullptr, "there is no place for the quota");
  std::shared_ptr<Database> database;
  const STATUS status = call.runtime().Load(RequireText(path, kPathSize), &database);
  if (status != kSuccess) return status;
  if (!database->properties().quota) return kNoQuotaInformation;
  *quota = *database->properties().quota;
  return kSuccess;
}

}  // namespace larkspan::notes_api
