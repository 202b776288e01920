#include "tests/support/TempFolder.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace larkspan {

namespace {

std::wstring SystemTemporaryFolder() {
  std::array<wchar_t, MAX_PATH + 1> path{};
  const DWORD length = GetTempPathW(static_cast<DWORD>(path.size()), path.data());
  return std::wstring(path.data(), length);  // Ends in a backslash.
}

}  // namespace

// Processes that test at the same time differ in their ID, folders of one process in the number. A
// folder that an earlier process with the same ID left behind is passed over.
TempFolder::TempFolder(std::wstring_view nameStart) {
  static int made = 0;
  const std::wstring start = SystemTemporaryFolder() + std::wstring(nameStart) + L"-" +
                             std::to_wstring(GetCurrentProcessId()) + L"-";
  do {
    path_ = start + std::to_wstring(++made);
    if (CreateDirectoryW(path_.c_str(), nullptr)) return;
  } while (GetLastError() == ERROR_ALREADY_EXISTS);
  throw std::runtime_error("no temporary folder can be made");
}

TempFolder::TempFolder() : TempFolder(L"larkspan-\u00E9\u03A9\u65E5") {}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::wstring TempFolder::operator/(std::wstring_view relativeName) const {
  return path_ + std::wstring(relativeName);
}

}  // namespace larkspan
