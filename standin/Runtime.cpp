#include "standin/Runtime.h"

#include <algorithm>
#include <fstream>

#include "standin/CharacterSet.h"
#include "standin/DirectoryReader.h"
#include "standin/JsonValues.h"
#include "standin/Paths.h"
#include "standin/Platform.h"
#include "standin/ReadOrReport.h"
#include "standin/StatusCodes.h"

namespace larkspan::standin {

namespace {

constexpr char kNobodyInParticular[] = "CN=Larkspan Tester/O=Example";

// Not the one that programs write, so that their own choice shows.
constexpr char kDefaultDecimalSeparator[] = ",";

std::string& LastLedger() {
  static std::string text = "{}";
  return text;
}

std::unique_ptr<Runtime>& Instance() {
  static auto runtime = std::make_unique<Runtime>();
  return runtime;
}

std::string DefaultUserName(const NotesIni& ini) {
  IdFile idFile;
  const std::filesystem::path file = ini.PathValue("keyfilename");
  if (file.empty() || ReadIdFile(file, &idFile) != kSuccess) return kNobodyInParticular;
  return idFile.name;
}

nlohmann::json ReadFaultFile(const std::filesystem::path& file) {
  try {
    return ReadJsonFile(file);
  } catch (const std::exception& error) {
    StrictFailure(PathToUtf8(file) + ": " + error.what());
  }
}

std::shared_ptr<Database> ReadDatabase(const std::filesystem::path& file) {
  return std::make_shared<Database>(file);
}

std::size_t CallersMemory(const Runtime& runtime) {
  const auto& objects = runtime.memory.objects();
  return static_cast<std::size_t>(
      std::count_if(objects.begin(), objects.end(),
                    [](const auto& entry) { return !entry.second->isLibraryOwned(); }));
}

std::size_t Locks(const Runtime& runtime) {
  std::size_t locks = 0;
  for (const auto& [handle, memory] : runtime.memory.objects()) locks += memory->locks();
  return locks;
}

std::size_t OpenKeyFiles(const Runtime& runtime) {
  return static_cast<std::size_t>(std::count_if(runtime.keyFiles.begin(), runtime.keyFiles.end(),
                                                [](const KeyFile& file) { return file.isOpen; }));
}

nlohmann::json ProcessJson() {
  return {{"errorMode", ErrorMode()},
          {"runtimeErrorMode", RuntimeErrorMode()},
          {"inheritableHandles", CountInheritableHandles()},
          {"variables", EnvironmentVariableNames()}};
}

}  // namespace

Runtime& TheRuntime() { return *Instance(); }

void Runtime::Configure(const NotesIni& found) {
  ini = found;
  SetStrictLog(ini.PathValue("standinstrictlog"));
  dataFolder = ini.PathValue("directory");
  if (dataFolder.empty()) dataFolder = ini.folder();
  userName = DefaultUserName(ini);
  decimalSeparator = Utf8ToNotes(ini.Value("standindecimalseparator"));
  if (decimalSeparator.empty()) decimalSeparator = kDefaultDecimalSeparator;
  if (ini.Value("standintrace") == "1") ledger.StartTrace();
  if (ini.Value("standininstallsfilter") == "1") InstallQuietCrashFilter();
  const std::filesystem::path plan = ini.PathValue("standinfaults");
  if (!plan.empty()) faults.Add(ReadFaultFile(plan), PathToUtf8(plan));
}

notes_api::STATUS Runtime::Load(std::string_view path, std::shared_ptr<Database>* database) {
  const std::filesystem::path file = DatabaseFile(dataFolder, path).lexically_normal();
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) return kFileDoesNotExist;
  const auto [entry, isNew] = loaded.try_emplace(file);
  if (isNew) {
    entry->second = ReadOrReport(file, ReadDatabase);
    if (entry->second != nullptr) faults.Add(entry->second->faults(), PathToUtf8(file));
  }
  if (entry->second == nullptr) return kDatabaseDamaged;
  *database = entry->second;
  return kSuccess;
}

notes_api::STATUS Runtime::LoadDirectory(std::string_view path,
                                         std::shared_ptr<const Directory>* directory) const {
  const std::filesystem::path folder = ServerFolder(dataFolder, SplitNetPath(path).server);
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) return kFileDoesNotExist;
  *directory = ReadOrReport(folder, [&](const std::filesystem::path& found) {
    return ReadDirectory(found, ServersFolder(dataFolder));
  });
  return *directory == nullptr ? kDatabaseDamaged : kSuccess;
}

std::string Runtime::DirectoryPath(std::string_view path) const {
  if (!SplitNetPath(path).server.empty()) return std::string(path);
  return Utf8ToNotes(ini.Variable("directory").value_or(PathToUtf8(ini.folder())));
}

Database& Runtime::DatabaseOf(notes_api::DHANDLE database) {
  const OpenDatabase& opened = databases.Get(database);
  Require(opened.database != nullptr, "the handle is that of a directory");
  return *opened.database;
}

std::string Runtime::ExpandedPath(std::string_view path) const {
  const NetPath parts = SplitNetPath(path);
  if (!parts.server.empty()) return parts.server + "!!" + parts.file;
  return Utf8ToNotes(PathToUtf8(DatabaseFile(dataFolder, path).lexically_normal()));
}

std::filesystem::path Runtime::IdFilePath(const char* name) const {
  return dataFolder / PathFromUtf16(NotesToUtf16(name));
}

void Runtime::RequireReadable(const void* start, std::size_t count) const {
  Require(start != nullptr, "there is nothing to read");
  for (const auto& [handle, object] : memory.objects()) {
    object->RequireHoldsAll(static_cast<const notes_api::BYTE*>(start), count);
  }
}

nlohmann::json Runtime::LedgerJson() const {
  nlohmann::json all = ledger.ToJson();
  all["open"] = {{"database", databases.objects().size()},
                 {"note", notes.objects().size()},
                 {"idTable", idTables.objects().size()},
                 {"memory", CallersMemory(*this)},
                 {"lock", Locks(*this)},
                 {"exporter", exporters.objects().size()},
                 {"collection", collections.objects().size()},
                 {"keyFile", OpenKeyFiles(*this)}};
  if (ini.Value("standinprocess") == "1") all["process"] = ProcessJson();
  return all;
}

// A program that counts on its handles being gone is free to end the runtime with some open; the
// ledger tells.
void EndRuntime() {
  const Runtime& runtime = TheRuntime();
  LastLedger() = runtime.LedgerJson().dump();
  const std::filesystem::path file = runtime.ini.PathValue("standinledger");
  if (!file.empty()) {
    std::ofstream(file, std::ios::app | std::ios::binary) << LastLedger() << "\n";
  }
  Instance() = std::make_unique<Runtime>();
}

void ResetRuntime() {
  Instance() = std::make_unique<Runtime>();
  SetStrictLog({});
  LastLedger() = "{}";
}

std::string CurrentLedgerText() {
  return TheRuntime().isStarted ? TheRuntime().LedgerJson().dump() : LastLedger();
}

}  // namespace larkspan::standin
