// The order in which the roles are tried decides what wins where several are asked for.
#include "app/Role.h"

#include <windows.h>

#include <optional>
#include <string>

#include "base/PathLimits.h"
#include "base/WideFormat.h"

namespace larkspan {

namespace {

// The reason why the folder cannot be used; a file of it that is out of the system's reach would
// fail by itself. Like every command-line fault it is shown and written nowhere.
std::optional<std::string> OutputFolderFault(const std::wstring& folder, bool archive) {
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  const DWORD error = GetLastError();
  const bool isFolder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (isFolder && IsWithinPathLimit(folder, archive)) return std::nullopt;
  return FormatNarrow("Unable to verify output directory '%.100S' (%X-%d)\n", folder.c_str(),
                      static_cast<unsigned int>(attributes), static_cast<int>(error));
}

}  // namespace

Role ChooseRole(const ParsedCommandLine& line) {
  const Settings& settings = line.settings;
  if (!line.accepted) return Role::kRefused;
  if (line.showVersion) return Role::kVersion;
  if (settings.scan) return Role::kScan;
  if (settings.servers) return Role::kServers;
  if (settings.databasePath.empty() || settings.outputFolder.empty()) return Role::kRefused;
  if (OutputFolderFault(settings.outputFolder, settings.archive)) return Role::kRefused;
  return settings.resumeNoteId == kNoNoteId ? Role::kSupervisor : Role::kWorker;
}

}  // namespace larkspan
