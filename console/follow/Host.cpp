#include "console/follow/Host.h"

#include <windows.h>

#include <array>
#include <cstdio>
#include <vector>

#include "base/OutputPaths.h"
#include "console/text/Utf.h"

namespace larkspan::console {

std::string HostName() {
  std::array<wchar_t, 256> name{};
  auto length = static_cast<DWORD>(name.size());
  if (!GetComputerNameExW(ComputerNameDnsHostname, name.data(), &length)) return {};
  return WideToUtf8({name.data(), length});
}

std::string UserName() {
  std::array<wchar_t, 257> name{};
  auto length = static_cast<DWORD>(name.size());
  if (!GetUserNameW(name.data(), &length) || length == 0) return {};
  return WideToUtf8({name.data(), length - 1});
}

std::string FileVersion(const std::wstring& path) {
  std::vector<std::byte> information(GetFileVersionInfoSizeW(path.c_str(), nullptr));
  if (information.empty() ||
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(information.size()),
                           information.data())) {
    return {};
  }
  void* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(information.data(), L"\\StringFileInfo\\040904B0\\ProductVersion", &text,
                      &length)) {
    return {};
  }
  return WideToUtf8(static_cast<const wchar_t*>(text));
}

std::optional<std::uint64_t> FreeBytes(const std::wstring& folder) {
  ULARGE_INTEGER bytes{};
  if (!GetDiskFreeSpaceExW(folder.c_str(), &bytes, nullptr, nullptr)) return std::nullopt;
  return bytes.QuadPart;
}

std::uint64_t Now() { return GetTickCount64(); }

std::string LocalClockBefore(std::uint64_t milliseconds) {
  constexpr std::uint64_t kUnitsInMillisecond = 10'000;
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  const std::uint64_t units =
      (static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) -
      milliseconds * kUnitsInMillisecond;
  time = {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
  SYSTEMTIME universal{}, local{};
  FileTimeToSystemTime(&time, &universal);
  SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
  std::array<char, 8> text;
  std::snprintf(text.data(), text.size(), "%02u:%02u", local.wHour % 24u, local.wMinute % 60u);
  return text.data();
}

std::uint64_t TemporaryFileMark(const std::wstring& folder) {
  WIN32_FIND_DATAW found{};
  const std::wstring path = output::Join(folder, output::kTemporary);
  const HANDLE search = FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  FindClose(search);
  const std::uint64_t size =
      static_cast<std::uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
  return size + 1;
}

}  // namespace larkspan::console
