// The order in which the roles are tried decides what wins where several are asked for.
#include "app/Role.h"

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

#include "base/OutputPaths.h"
#include "base/WideFormat.h"

namespace larkspan {

namespace {

// Whether this process may use paths of more than 260 characters. Older systems cannot tell, since
// none may there.
bool AreLongPathsEnabled() {
  using Function = BOOLEAN(WINAPI*)();
  const auto areEnabled = reinterpret_cast<Function>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlAreLongPathsEnabled")));
  return areEnabled != nullptr && areEnabled() != FALSE;
}

// The system takes such a path as it stands, and of any length that it can count.
bool IsVerbatim(const std::wstring& path) { return path.starts_with(L"\\\\?\\"); }

// Files in the folder must be within the reach of the system, or each of them would fail by itself.
// The longest name is that of a view that is not complete yet, or that of a note.
bool IsTooLong(const std::wstring& folder, bool archive) {
  constexpr std::size_t kMaxVerbatim = 32767;  // With its NUL.
  const std::wstring longest =
      archive ? output::StageOf(output::ViewFile(0)) : output::NoteFile({}, 0);
  if (IsVerbatim(folder)) return folder.size() + longest.size() + 1 > kMaxVerbatim;
  const DWORD length = GetFullPathNameW(folder.c_str(), 0, nullptr, nullptr);  // With its NUL.
  return length + longest.size() > MAX_PATH && !AreLongPathsEnabled();
}

// The reason why the folder cannot be used. Like every command-line fault it is shown and written
// nowhere.
std::optional<std::string> OutputFolderFault(const std::wstring& folder, bool archive) {
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  const DWORD error = GetLastError();
  const bool isFolder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (isFolder && !IsTooLong(folder, archive)) return std::nullopt;
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
