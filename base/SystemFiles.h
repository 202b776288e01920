// The system's own calls behind base/FileSystem.h, function by function. They are inline, so that
// the door costs the product nothing.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace larkspan::system_files {

inline std::FILE* Open(const std::wstring& path, const wchar_t* mode) {
  return _wfopen(path.c_str(), mode);
}

inline std::size_t Write(std::FILE* file, std::string_view bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), file);
}

inline bool Close(std::FILE* file) {
  const bool written = std::ferror(file) == 0;
  return std::fclose(file) == 0 && written;
}

inline bool Append(const std::wstring& path, std::string_view bytes) {
  const HANDLE file =
      CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  return CloseHandle(file) != 0 && written == bytes.size();
}

inline bool Delete(const std::wstring& path) { return DeleteFileW(path.c_str()) != 0; }

inline bool Move(const std::wstring& from, const std::wstring& to) {
  return MoveFileW(from.c_str(), to.c_str()) != 0;
}

inline bool CreateFolder(const std::wstring& path) {
  return CreateDirectoryW(path.c_str(), nullptr) != 0;
}

}  // namespace larkspan::system_files
