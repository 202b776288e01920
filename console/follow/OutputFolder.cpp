#include "console/follow/OutputFolder.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <functional>
#include <system_error>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kProbe[] = L"\\larkspan-probe.tmp";
constexpr wchar_t kAside[] = L".first";
constexpr std::array kMovedFiles = {output::kAcl, output::kProperties};

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

void MoveAside(const std::wstring& folder) {
  for (const wchar_t* name : kMovedFiles) {
    const std::wstring path = output::Join(folder, name);
    file_system::Move(path, path + kAside, file_system::Earlier::kIsReplaced);
  }
}

void SettleMovedAside(const std::wstring& folder) {
  for (const wchar_t* name : kMovedFiles) {
    const std::wstring path = output::Join(folder, name);
    if (!file_system::Move(path + kAside, path, file_system::Earlier::kStays)) {
      file_system::Delete(path + kAside);
    }
  }
}

}  // namespace larkspan::console
