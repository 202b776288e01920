#include "base/TemporaryFile.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <array>
#include <cstdint>

namespace larkspan {

namespace {

// The C runtime's own temporary files lie in the root of the drive, where an ordinary user may not
// write. The name is made and the file with it, which is then opened in place.
HANDLE CreateTemporaryFile() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  std::array<wchar_t, MAX_PATH> path{};
  if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0 ||
      GetTempFileNameW(folder.data(), L"lks", 0, path.data()) == 0) {
    return INVALID_HANDLE_VALUE;
  }
  return CreateFileW(path.data(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                     FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

}  // namespace

UniqueFile OpenTemporaryFile() {
  const HANDLE handle = CreateTemporaryFile();
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY);
  if (descriptor == -1) {
    CloseHandle(handle);
    return nullptr;
  }
  UniqueFile file(_fdopen(descriptor, "w+b"));
  if (!file) _close(descriptor);
  return file;
}

}  // namespace larkspan
