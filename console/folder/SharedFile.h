// A file that is only read, while other programs may read, write, move or delete it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace larkspan::console {

enum class FileReading { kRead, kMissing, kUnreadable };

class SharedFile {
 public:
  // Says in `state` whether it is open.
  explicit SharedFile(const std::wstring& path);
  ~SharedFile();
  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;

  // kRead: it is open.
  FileReading state() const { return state_; }

  // How many of the next bytes were read; fewer than asked for only at the end of the file. No
  // value when the system refuses.
  std::optional<std::size_t> Read(std::span<char> buffer);

  // All that is left of it. No value when the system refuses, or it has a gigabyte and more.
  std::optional<std::string> ReadAll();

 private:
  HANDLE handle_;
  FileReading state_ = FileReading::kRead;
};

}  // namespace larkspan::console
