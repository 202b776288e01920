#include "console/batch/PlanEntries.h"

#include "console/batch/BatchFolders.h"
#include "console/batch/EarlierExport.h"

namespace larkspan::console {

namespace {

// larkspan.exe would take it for the name of a configuration.
bool CannotBeHandedOn(const ListedDatabase& database) {
  return database.path.starts_with("=") || database.server.starts_with("=");
}

void LookAt(const ExportRequest& wanted, BatchEntry& entry) {
  if (entry.database.isFolder) {
    entry.state = BatchState::kLeftOut;
    return;
  }
  if (CannotBeHandedOn(entry.database)) {
    entry.state = BatchState::kDone;
    entry.code = ExitCode::kCouldNotRun;
    entry.reason = "a name that begins with '=' cannot be handed to larkspan.exe";
    return;
  }
  const Earlier earlier = LookForEarlier(wanted, entry);
  entry.wasResumed = earlier == Earlier::kCutOff;
  if (earlier == Earlier::kFinished) entry.state = BatchState::kFinished;
  if (earlier == Earlier::kInTheWay) entry.state = BatchState::kDone;
}

}  // namespace

std::vector<BatchEntry> PlanEntries(const std::wstring& root,
                                    const std::vector<ListedDatabase>& databases,
                                    const ExportRequest& wanted) {
  const std::vector<std::wstring> folders = ChooseFolders(root, databases);
  std::vector<BatchEntry> entries;
  for (std::size_t index = 0; index < databases.size(); ++index) {
    BatchEntry entry;
    entry.database = databases[index];
    entry.folder = folders[index];
    LookAt(wanted, entry);
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace larkspan::console
