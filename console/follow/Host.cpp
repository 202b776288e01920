#include "console/follow/Host.h"

#include <windows.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

#include "base/OutputPaths.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// The version resource of a file; empty when it has none.
std::vector<std::byte> VersionInformation(const std::wstring& path) {
  std::vector<std::byte> information(GetFileVersionInfoSizeW(path.c_str(), nullptr));
  if (information.empty() ||
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(information.size()),
                           information.data())) {
    return {};
  }
  return information;
}

struct VersionValue {
  const void* place = nullptr;  // Within the resource; null: there is no such value.
  UINT length = 0;
};

VersionValue FindVersionValue(std::vector<std::byte>& information, const wchar_t* name) {
  void* place = nullptr;
  UINT length = 0;
  if (information.empty() || !VerQueryValueW(information.data(), name, &place, &length)) return {};
  return {place, length};
}

}  // namespace

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
  std::vector<std::byte> information = VersionInformation(path);
  const VersionValue text =
      FindVersionValue(information, L"\\StringFileInfo\\040904B0\\ProductVersion");
  return text.place == nullptr ? "" : WideToUtf8(static_cast<const wchar_t*>(text.place));
}

std::string FileVersionNumbers(const std::wstring& path) {
  std::vector<std::byte> information = VersionInformation(path);
  const VersionValue fixed = FindVersionValue(information, L"\\");
  VS_FIXEDFILEINFO numbers{};
  if (fixed.place == nullptr || fixed.length < sizeof numbers) return {};
  std::memcpy(&numbers, fixed.place, sizeof numbers);
  const auto text = [](DWORD pair) {
    return std::to_string(HIWORD(pair)) + "." + std::to_string(LOWORD(pair));
  };
  return text(numbers.dwFileVersionMS) + "." + text(numbers.dwFileVersionLS);
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
