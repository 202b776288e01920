#include "base/File.h"

#include <windows.h>

namespace larkspan {

namespace {

std::string WithCarriageReturns(std::string_view text) {
  std::string bytes;
  for (const char byte : text) {
    if (byte == '\n') bytes.push_back('\r');
    bytes.push_back(byte);
  }
  return bytes;
}

}  // namespace

UniqueFile OpenFile(const std::wstring& path, const wchar_t* mode) {
  return UniqueFile(_wfopen(path.c_str(), mode));
}

bool CloseFile(UniqueFile file) {
  const bool written = std::ferror(file.get()) == 0;
  return std::fclose(file.release()) == 0 && written;
}

bool AppendToTextFile(const std::wstring& path, std::string_view text) {
  const HANDLE file =
      CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const std::string bytes = WithCarriageReturns(text);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  return CloseHandle(file) != 0 && written == bytes.size();
}

}  // namespace larkspan
