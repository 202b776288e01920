// The state of the running library: configuration, open handles, fault plan, ledger. There is one
// per process, and it is emptied when the runtime ends. Entry points reach it through Call, so
// that none of them works on a library that is not running.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "standin/Database.h"
#include "standin/Directory.h"
#include "standin/Exporter.h"
#include "standin/Faults.h"
#include "standin/HandleTable.h"
#include "standin/IdFiles.h"
#include "standin/IdTable.h"
#include "standin/Ledger.h"
#include "standin/Memory.h"
#include "standin/NotesIni.h"
#include "standin/OpenNote.h"

namespace larkspan::standin {

// A database, or a data directory, which opens like one.
struct OpenDatabase {
  std::shared_ptr<Database> database;  // null when this is a directory
  std::shared_ptr<const Directory> directory;
  std::string path;           // as the caller gave it
  std::string canonicalPath;  // as the library tells it
};

struct OpenCollection {
  notes_api::DHANDLE viewDatabase = 0;
  notes_api::DHANDLE dataDatabase = 0;
  notes_api::NOTEID view = 0;
  std::shared_ptr<const View> entries;
};

struct KeyFile {
  IdFile id;
  bool isOpen = true;
};

struct Runtime {
  bool isStarted = false;
  std::thread::id thread;  // the one that started the runtime
  NotesIni ini;
  std::filesystem::path dataFolder;
  std::string userName;
  std::string decimalSeparator;
  Ledger ledger;
  FaultPlan faults;

  HandleTable<OpenDatabase> databases{HandleKind::kDatabase, 0xFFFFFF};
  HandleTable<OpenNote> notes{HandleKind::kNote, 0xFFFFFF};
  HandleTable<IdTable> idTables{HandleKind::kIdTable, 0xFFFFFF};
  HandleTable<MemoryObject> memory{HandleKind::kMemory, 0xFFFFFF};
  HandleTable<Exporter> exporters{HandleKind::kExporter, 0xFFFFFF};
  HandleTable<OpenCollection> collections{HandleKind::kCollection, 0xFFFF};
  std::deque<KeyFile> keyFiles;  // closed ones stay, so that their use is seen
  std::uint32_t exportersCreated = 0;

  // Every file that was opened, also those that turned out to be no database (null then).
  std::map<std::filesystem::path, std::shared_ptr<Database>> loaded;

  // Takes over the configuration and the fault plan it names.
  void Configure(const NotesIni& found);

  // The database of a path, read at its first use, when the faults of the file join the plan.
  notes_api::STATUS Load(std::string_view path, std::shared_ptr<Database>* database);

  // The data directory of a path without a file, read anew.
  notes_api::STATUS LoadDirectory(std::string_view path,
                                  std::shared_ptr<const Directory>* directory) const;

  // What the library tells of the path of a directory that tells none itself: the server, or for
  // the local one what the configuration says.
  std::string DirectoryPath(std::string_view path) const;

  // The full path of a database: the server, if one is named, and the whole path of the file.
  std::string ExpandedPath(std::string_view path) const;

  // ID files are named relative to the data folder.
  std::filesystem::path IdFilePath(const char* name) const;

  // A strict failure when the handle is that of a directory.
  Database& DatabaseOf(notes_api::DHANDLE database);

  // A strict failure when the bytes lie in a memory object and reach past its end. Whether memory
  // of the caller's own is long enough, nobody can tell.
  void RequireReadable(const void* start, std::size_t count) const;

  // The ledger with the handles that are still open.
  nlohmann::json LedgerJson() const;
};

Runtime& TheRuntime();

// Writes the ledger where the configuration wants it, and empties the runtime.
void EndRuntime();

// Empties the runtime, and that is all.
void ResetRuntime();

// The ledger of the running runtime or, after its end, of the one that ended last.
std::string CurrentLedgerText();

}  // namespace larkspan::standin
