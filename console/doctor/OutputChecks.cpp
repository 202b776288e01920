#include "console/doctor/OutputChecks.h"

#include <windows.h>

#include <array>
#include <filesystem>

#include "base/FileSystem.h"
#include "base/PathLimits.h"
#include "console/follow/Host.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr char kNameAnother[] = "Name another folder with --out.";

// With less an export ends itself.
constexpr std::uint64_t kLeastSpace = std::uint64_t{64} << 20;

// A folder with a file in it, since that is what an export makes.
bool CanWriteTo(const std::wstring& folder) {
  const std::wstring probe =
      folder + L"\\larkspan-doctor-" + std::to_wstring(GetCurrentProcessId()) + L".tmp";
  if (!file_system::CreateFolder(probe)) return false;
  const std::wstring file = probe + L"\\probe.tmp";
  const bool written = file_system::Append(file, "probe").complete;
  file_system::Delete(file);
  return RemoveDirectoryW(probe.c_str()) && written;
}

bool IsOnNetwork(const std::wstring& folder) {
  std::array<wchar_t, 32768> root{};
  if (!GetVolumePathNameW(folder.c_str(), root.data(), static_cast<DWORD>(root.size()))) {
    return false;
  }
  return GetDriveTypeW(root.data()) == DRIVE_REMOTE;
}

std::wstring ParentOf(const std::wstring& folder) {
  const std::wstring parent = std::filesystem::path(folder).parent_path().wstring();
  return parent.ends_with(L':') ? parent + L'\\' : parent;
}

// Such a path the system takes as it stands.
bool MayBeLong(const std::wstring& path) {
  return AreLongPathsEnabled() || path.starts_with(L"\\\\?\\");
}

}  // namespace

std::wstring NearestFolder(std::wstring folder) {
  while (!FolderExists(folder)) {
    const std::wstring parent = ParentOf(folder);
    if (parent.empty() || parent == folder) return {};
    folder = parent;
  }
  return folder;
}

CheckFinding CheckFolder(const std::wstring& out) {
  const std::string name = WideToUtf8(out);
  const std::wstring nearest = NearestFolder(out);
  if (nearest.empty()) return Failed(name + ": there is no such drive", kNameAnother);
  const bool isThere = nearest == out;
  if (!isThere && GetFileAttributesW(out.c_str()) != INVALID_FILE_ATTRIBUTES) {
    return Failed(name + " is a file", kNameAnother);
  }
  if (isThere && !IsEmptyFolder(out)) {
    return Failed(name + " is not empty", "Name a folder with --out that is empty or not there.");
  }
  const std::string where = WideToUtf8(nearest);
  if (!CanWriteTo(nearest)) {
    return Failed(where + " cannot be written to",
                  "Give this user the right to make files and folders there, or name another "
                  "folder with --out.");
  }
  const std::string how = IsOnNetwork(nearest) ? ", on a network drive" : "";
  return Passed(where + " can be written to" + how);
}

CheckFinding CheckSpace(const std::wstring& out, std::optional<std::uint64_t> databaseSize) {
  const std::optional<std::uint64_t> free = FreeBytes(NearestFolder(out));
  if (!free) {
    return Warned("the system does not tell it", "Look at the room on that disk yourself.");
  }
  return JudgeSpace(*free, databaseSize);
}

CheckFinding JudgeSpace(std::uint64_t free, std::optional<std::uint64_t> databaseSize) {
  const std::string detail = BytesText(free) + " free";
  if (free < kLeastSpace) {
    return Failed(detail + ", and an export ends itself below " + BytesText(kLeastSpace),
                  "Make room on that disk, or name a folder on another one with --out.");
  }
  if (!databaseSize) return Passed(detail + "; no size of a database to hold it against");
  const std::string against = detail + ", and the database has " + BytesText(*databaseSize);
  if (free < *databaseSize) {
    return Failed(against, "Make room on that disk, or name a folder on another one with --out.");
  }
  if (free / 2 < *databaseSize) {
    return Warned(against,
                  "Have twice the size of the database free: DXL is text, and takes more "
                  "room than what it is made of.");
  }
  return Passed(against);
}

CheckFinding CheckPaths(const std::wstring& out) {
  const std::size_t longest = out.size() + LongestOutputName(true);
  const std::string detail =
      "paths of up to " + std::to_string(longest) + " characters; the system takes " +
      (MayBeLong(out) ? "long ones" : std::to_string(MAX_PATH - 1) + " at most");
  if (IsWithinPathLimit(out, true)) return Passed(detail);
  return Failed(detail, "Name a folder with a path of " +
                            std::to_string(MAX_PATH - 1 - LongestOutputName(true)) +
                            " characters at most, or enable long paths on this machine.");
}

}  // namespace larkspan::console
