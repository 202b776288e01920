#include "bench/floor/Files.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "bench/Content.h"

namespace larkspan::bench {

namespace {

void WriteAndClose(HANDLE file, std::string_view bytes) {
  if (file == INVALID_HANDLE_VALUE) Fail("open");
  DWORD written = 0;
  const BOOL isWritten =
      WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (isWritten == 0 || written != bytes.size()) Fail("write");
  if (CloseHandle(file) == 0) Fail("close");
}

}  // namespace

void Fail(const char* operation) {
  std::fprintf(stderr, "floor: %s failed (%lu)\n", operation, GetLastError());
  std::exit(1);
}

void ReplaceFile(const std::wstring& path, std::string_view bytes) {
  WriteAndClose(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr),
                bytes);
}

void AppendToFile(const std::wstring& path, std::string_view bytes) {
  WriteAndClose(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr),
                bytes);
}

void DeleteIfThere(const std::wstring& path) {
  if (DeleteFileW(path.c_str()) == 0 && GetLastError() != ERROR_FILE_NOT_FOUND) Fail("delete");
}

void Move(const std::wstring& from, const std::wstring& to) {
  if (MoveFileExW(from.c_str(), to.c_str(), 0) == 0) Fail("move");
}

void CreateFolder(const std::wstring& path) {
  if (CreateDirectoryW(path.c_str(), nullptr) == 0 && GetLastError() != ERROR_ALREADY_EXISTS) {
    Fail("make a folder");
  }
}

std::wstring NumberedFile(const std::wstring& folder, std::uint32_t number, const wchar_t* ending) {
  std::array<char, 8> digits{};
  WriteHexDigits(number, digits.data());
  return folder + L'\\' + std::wstring(digits.begin(), digits.end()) + ending;
}

}  // namespace larkspan::bench
