// A worker's run has two phases. The preparation makes the exporters, opens the database and gets
// the list of notes: the first worker of a run does the once-per-database work, searches the
// database and freezes the list in the ID table file; every later worker reads the list back. Then
// the listed notes are exported one by one.
//
// The run's members are released in the reverse order of their making on every way out: ID table,
// database, exporters.
#include "export/WorkerRun.h"

#include <string>

#include "base/Settings.h"
#include "dxl/DatabaseProperties.h"
#include "dxl/ViewExport.h"
#include "export/DatabaseAudit.h"
#include "export/ExporterSet.h"
#include "export/FilePlacement.h"
#include "export/IdTableFile.h"
#include "export/NoteLoop.h"
#include "export/OutputFolder.h"
#include "export/StagedFile.h"
#include "export/UnidIndex.h"
#include "notes/Database.h"
#include "notes/IdTables.h"
#include "notes/LibraryFunctions.h"
#include "notes/NoteSearch.h"
#include "report/Progress.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

class WorkerRun {
 public:
  explicit WorkerRun(std::uint32_t resumeNoteId) : resumeNoteId_(resumeNoteId) {}

  void Run() {
    if (settings_.archive) StartPipeMonitor();
    if (!Prepare()) return;
    if (!ExportListedNotes(exporters_, database_, notes_, resumeNoteId_)) return;
    // After a crash on the last note no further export deletes what was left of that one, and a
    // worker started by hand has no supervisor that would.
    DeleteStagedFile();
    AuditSizeAfter(databasePath_);
  }

 private:
  bool IsFirstWorker() const { return resumeNoteId_ == 0; }

  bool Prepare() {
    if (!LocateLibrary() || !CreateExporters(exporters_) || !Open()) return false;
    if (IsFirstWorker() && !DoOncePerDatabaseWork()) return false;
    if (!MakeTable()) return false;
    return IsFirstWorker() ? ListNotes() : ReadList();
  }

  bool LocateLibrary() {
    switch (FindLibraryFunctions(L"nnotes.dll")) {
      case LibraryLookup::kFound:
        return true;
      case LibraryLookup::kNoLibrary:
        LogError(L"Unable to get module handle for nnotes.dll");
        return false;
      case LibraryLookup::kNoSearchExtended3:
        LogError(L"Unable to locate NSFSearchExtended3");
        return false;
      case LibraryLookup::kNoPurgeCollection:
        LogError(L"Unable to load NIFPurgeCollection");
        return false;
    }
    return false;
  }

  std::wstring FullPath() const {
    const bool local = settings_.server.empty() || settings_.server == L"<Local>";
    return local ? settings_.databasePath : settings_.server + L"!!" + settings_.databasePath;
  }

  bool Open() {
    const Status status = OpenByPath();
    if (!status.ok()) LogStatus(LogLevel::kError, L"Error opening database (%s)", status);
    return status.ok();
  }

  Status OpenByPath() {
    if (const Status status = PathToNotes(FullPath(), databasePath_); !status.ok()) return status;
    Progress(L"Opening '%s' on '%s'", settings_.databasePath.c_str(), settings_.server.c_str());
    return settings_.fullAccess ? OpenDatabaseFullAccess(databasePath_, database_)
                                : OpenDatabase(databasePath_, database_);
  }

  bool DoOncePerDatabaseWork() {
    DeleteLeftStages();
    AuditDatabase(database_);
    AuditSizeBefore(databasePath_);
    Progress(L"Exporting database properties");
    if (!ExportProperties()) return false;
    ExportAcl();
    CreateOutputSubfolders();
    if (settings_.archive) DeleteUnidIndex();
    return true;
  }

  bool ExportProperties() {
    const Status status = ExportDatabaseProperties(database_);
    if (!status.ok()) {
      LogStatus(LogLevel::kError, L"Error exporting database properties (%s)", status);
    }
    return status.ok();
  }

  void ExportAcl() {
    const Status status = ExportAclToFile(exporters_.normal, database_);
    if (!status.ok()) LogStatus(LogLevel::kWarning, L"Error exporting ACL (%s)", status);
  }

  bool MakeTable() {
    const Status status = CreateIdTable(notes_);
    if (!status.ok()) LogStatus(LogLevel::kError, L"Error retrieving notes (%s)", status);
    return status.ok();
  }

  bool ListNotes() {
    if (settings_.archive && !settings_.noViews) ExportViews(database_);
    Progress(L"Scanning documents");
    if (!Search()) return false;
    if (!WriteIdTableFile(notes_)) {
      LogError(L"Unable to save document list");
      return false;
    }
    Progress(L"DOCCOUNT: %d", static_cast<int>(CountIds(notes_)));
    return true;
  }

  bool Search() {
    constexpr NoteSearch kEverything{0x7FFF, 0x80000002};
    constexpr NoteSearch kAllButDocuments{0x7FFE, 0};
    const Status status =
        SearchNotes(database_, settings_.archive ? kEverything : kAllButDocuments, notes_);
    if (!status.ok()) LogStatus(LogLevel::kError, L"Error retrieving notes (%s)", status);
    return status.ok();
  }

  bool ReadList() {
    const bool read = ReadIdTableFile(notes_);
    if (!read) LogError(L"Unable to read document list");
    return read;
  }

  const Settings& settings_ = ProcessSettings();
  const std::uint32_t resumeNoteId_;
  ExporterSet exporters_;
  std::string databasePath_;  // In the Notes character set.
  Database database_;
  IdTable notes_;
};

}  // namespace

void RunExport(std::uint32_t resumeNoteId) { WorkerRun(resumeNoteId).Run(); }

}  // namespace larkspan
