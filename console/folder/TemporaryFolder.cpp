#include "console/folder/TemporaryFolder.h"

#include <windows.h>

#include <array>
#include <filesystem>

#include "base/FileSystem.h"

namespace larkspan::console {

namespace {

// Others of the same number may be left from a program that was ended by force.
constexpr int kTries = 1000;

std::wstring MakeFolder() {
  std::array<wchar_t, MAX_PATH + 2> folder{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
  if (length == 0 || length >= folder.size()) return {};
  const std::wstring beginning =
      std::wstring(folder.data(), length) + L"larkspan-" + std::to_wstring(GetCurrentProcessId());
  for (int number = 1; number <= kTries; ++number) {
    const std::wstring path = beginning + L"-" + std::to_wstring(number);
    if (file_system::CreateFolder(path)) return path;
    if (GetLastError() != ERROR_ALREADY_EXISTS) return {};
  }
  return {};
}

}  // namespace

TemporaryFolder::TemporaryFolder() : path_(MakeFolder()) {}

TemporaryFolder::~TemporaryFolder() {
  if (path_.empty()) return;
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

}  // namespace larkspan::console
