// The system's own calls behind base/FileSystem.h, function by function. They are inline, so that
// the door costs the product nothing.
#pragma once

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "base/Appended.h"

namespace larkspan::system_files {

// What a mode of the C runtime asks for, and that no process started meanwhile inherits the file.
// The runtime has a letter for that too, but not in all of its versions.
inline int OpenFlags(std::wstring_view mode) {
  const auto has = [mode](wchar_t letter) { return mode.find(letter) != mode.npos; };
  const bool reads = mode.starts_with(L'r');
  int flags = _O_NOINHERIT | (has(L'b') ? _O_BINARY : _O_TEXT);
  flags |= has(L'+') ? _O_RDWR : reads ? _O_RDONLY : _O_WRONLY;
  if (!reads) flags |= _O_CREAT | (mode.starts_with(L'a') ? _O_APPEND : _O_TRUNC);
  return flags;
}

// A file that a process of the library has inherited could not be moved or deleted while it lives.
inline std::FILE* Open(const std::wstring& path, const wchar_t* mode) {
  const int descriptor = _wsopen(path.c_str(), OpenFlags(mode), _SH_DENYNO, _S_IREAD | _S_IWRITE);
  if (descriptor == -1) return nullptr;
  std::FILE* const file = _wfdopen(descriptor, mode);
  if (file == nullptr) _close(descriptor);
  return file;
}

// The C runtime's own temporary files lie in the root of the drive, where an ordinary user may not
// write. This one is made with its name and then opened anew, to be deleted when it is closed.
inline HANDLE CreateTemporary() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  std::array<wchar_t, MAX_PATH> path{};
  if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0 ||
      GetTempFileNameW(folder.data(), L"lks", 0, path.data()) == 0) {
    return INVALID_HANDLE_VALUE;
  }
  const HANDLE file =
      CreateFileW(path.data(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) DeleteFileW(path.data());
  return file;
}

// A handle that became a descriptor, and a descriptor that became a stream, are closed with it.
inline std::FILE* OpenTemporary() {
  const HANDLE handle = CreateTemporary();
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
  if (descriptor == -1) {
    CloseHandle(handle);
    return nullptr;
  }
  std::FILE* const file = _fdopen(descriptor, "w+b");
  if (file == nullptr) _close(descriptor);
  return file;
}

inline std::size_t Write(std::FILE* file, std::string_view bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), file);
}

inline std::size_t WriteThrough(std::FILE* file, std::string_view bytes) {
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
  DWORD written = 0;
  WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  return written;
}

inline bool Flush(std::FILE* file) { return std::fflush(file) == 0 && std::ferror(file) == 0; }

// A runtime's fclose can return 0 though what it still had to write did not fit on the disk.
inline bool Close(std::FILE* file) {
  const bool written = Flush(file);
  return std::fclose(file) == 0 && written;
}

inline file_system::Appended Append(const std::wstring& path, std::string_view bytes) {
  const HANDLE file =
      CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  const bool closed = CloseHandle(file) != 0;
  return {.opened = true, .written = written, .complete = closed && written == bytes.size()};
}

inline bool Delete(const std::wstring& path) { return DeleteFileW(path.c_str()) != 0; }

inline bool Move(const std::wstring& from, const std::wstring& to, bool replacesEarlier) {
  const DWORD replacing = replacesEarlier ? MOVEFILE_REPLACE_EXISTING : 0;
  return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_COPY_ALLOWED | replacing) != 0;
}

inline bool CreateFolder(const std::wstring& path) {
  return CreateDirectoryW(path.c_str(), nullptr) != 0;
}

}  // namespace larkspan::system_files
