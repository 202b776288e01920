#include "base/File.h"

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
  return UniqueFile(file_system::Open(path, mode));
}

UniqueFile OpenTemporaryFile() { return UniqueFile(file_system::OpenTemporary()); }

bool CloseFile(UniqueFile file) { return file_system::Close(file.release()); }

bool AppendToTextFile(const std::wstring& path, std::string_view text) {
  return file_system::Append(path, WithCarriageReturns(text));
}

}  // namespace larkspan
