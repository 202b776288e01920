#include "console/follow/OutputFolder.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/folder/HexDigits.h"
#include "console/folder/RunLogFile.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kProbe[] = L"\\larkspan-probe.tmp";
constexpr wchar_t kAside[] = L".first";
constexpr std::array kMovedFiles = {output::kAcl, output::kProperties};

// True when the file that was moved aside has its name again.
bool Settle(const std::wstring& aside, const std::wstring& path) {
  if (file_system::Move(aside, path, file_system::Earlier::kStays)) return true;
  // It may also be held by somebody. It stays then, and is told as a file that nobody knows.
  if (FileExists(path)) file_system::Delete(aside);
  return false;
}

// In the folder itself: the exporter counts whatever lies in the folder of the design notes.
std::wstring AsideOf(const std::wstring& folder, std::wstring_view name) {
  return output::Join(folder, name) + kAside;
}

// None for the files of the database itself.
std::optional<std::uint32_t> NoteOfAside(std::wstring_view name) {
  constexpr std::size_t kIdLength = 8;
  return ParseNoteId(name.substr(0, kIdLength));
}

bool CanWriteTo(const std::wstring& folder) {
  const std::wstring probe = output::Join(folder, kProbe);
  const bool written = file_system::Append(probe, "probe").complete;
  file_system::Delete(probe);
  return written;
}

}  // namespace

std::wstring WholePath(const std::string& path) {
  const std::wstring given = Utf8ToWide(path);
  const DWORD capacity = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
  std::wstring whole(capacity, L'\0');
  whole.resize(GetFullPathNameW(given.c_str(), capacity, whole.data(), nullptr));
  while (whole.size() > 3 && whole.ends_with(L'\\')) whole.pop_back();
  return whole;
}

std::string MakeEmptyFolder(const std::wstring& folder) {
  const std::string name = "the folder '" + WideToUtf8(folder) + "' ";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!FolderExists(folder)) return name + "cannot be made";
  if (!IsEmptyFolder(folder)) return name + "is not empty";
  return CanWriteTo(folder) ? "" : name + "cannot be written to";
}

bool FolderExists(const std::wstring& folder) {
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsEmptyFolder(const std::wstring& folder) {
  std::error_code error;
  return std::filesystem::is_empty(folder, error) && !error;
}

// The system takes the lock away with the process, however that ends.
FolderLock::FolderLock(std::wstring folder) {
  CharLowerBuffW(folder.data(), static_cast<DWORD>(folder.size()));
  const std::size_t hash = std::hash<std::wstring>{}(folder);
  const std::wstring name = L"Global\\larkspan-console-" + std::to_wstring(hash);
  mutex_ = SystemHandle(CreateMutexW(nullptr, FALSE, name.c_str()));
  isHeld_ = mutex_ && GetLastError() != ERROR_ALREADY_EXISTS;
}

void MoveDatabaseFilesAside(const std::wstring& folder) {
  for (const wchar_t* name : kMovedFiles) {
    file_system::Move(output::Join(folder, name), AsideOf(folder, name),
                      file_system::Earlier::kIsReplaced);
  }
}

bool SettleDatabaseFiles(const std::wstring& folder) {
  const auto settle = [&folder](const wchar_t* name) {
    return Settle(AsideOf(folder, name), output::Join(folder, name));
  };
  settle(output::kProperties);
  return settle(output::kAcl);
}

void MoveDesignFileAside(const std::wstring& folder, std::uint32_t note) {
  file_system::Move(output::Join(folder, output::NoteFile(output::kDesignFolder, note)),
                    AsideOf(folder, output::NoteFile({}, note)), file_system::Earlier::kIsReplaced);
}

void SettleDesignFiles(const std::wstring& folder) {
  std::vector<std::uint32_t> notes;
  VisitFiles(folder, std::wstring(L"*.dxl") + kAside, [&](std::wstring_view name) {
    if (const auto note = NoteOfAside(name)) notes.push_back(*note);
  });
  if (notes.empty()) return;
  const RunLogFacts log = ReadRunLogFile(folder);
  for (const std::uint32_t note : notes) {
    const std::wstring file = output::NoteFile(output::kDesignFolder, note);
    const auto isOfNote = [note](const NoteLine& line) { return line.id == note; };
    if (FileExists(output::Join(folder, file)) ||
        std::any_of(log.notes.begin(), log.notes.end(), isOfNote))
      Settle(AsideOf(folder, output::NoteFile({}, note)), output::Join(folder, file));
  }
}

std::uint64_t CountPlainNotes(const std::wstring& folder) {
  std::uint64_t count = 0;
  VisitFiles(folder, L"*.dxl", [&count](std::wstring_view name) {
    constexpr std::size_t kNoteNameLength = 12;
    if (name.size() == kNoteNameLength) ++count;
  });
  return count;
}

}  // namespace larkspan::console
