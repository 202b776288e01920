#include "base/File.h"

#include <mutex>

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
  // Wine finds the end of a file and writes there in two steps, between which another thread's text
  // can come to stand at the same place. Processes never append at the same time.
  static std::mutex oneThreadAtATime;
  const std::lock_guard lock(oneThreadAtATime);
  return file_system::Append(path, WithCarriageReturns(text));
}

}  // namespace larkspan
