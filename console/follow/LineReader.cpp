#include "console/follow/LineReader.h"

#include <windows.h>

#include <array>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

std::vector<std::string> LineSplitter::Add(std::string_view bytes) {
  std::vector<std::string> lines;
  rest_ += bytes;
  std::size_t begin = 0;
  for (std::size_t end; (end = rest_.find('\n', begin)) != std::string::npos; begin = end + 1) {
    std::string line = rest_.substr(begin, end - begin);
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(std::move(line));
  }
  rest_.erase(0, begin);
  return lines;
}

std::string LineSplitter::TakeRest() { return std::exchange(rest_, {}); }

void FileTail::BeginAnew() {
  position_ = 0;
  splitter_ = {};
}

std::vector<std::string> FileTail::ReadNewLines() {
  const SystemHandle file(CreateFileW(path_.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file && GetLastError() == ERROR_FILE_NOT_FOUND) BeginAnew();
  LARGE_INTEGER size{};
  if (!file || !GetFileSizeEx(file.get(), &size)) return {};
  if (static_cast<std::uint64_t>(size.QuadPart) < position_) BeginAnew();
  LARGE_INTEGER position;
  position.QuadPart = static_cast<LONGLONG>(position_);
  SetFilePointerEx(file.get(), position, nullptr, FILE_BEGIN);
  std::vector<std::string> lines;
  std::array<char, 16384> bytes;
  DWORD count = 0;
  while (ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) &&
         count > 0) {
    position_ += count;
    for (std::string& line : splitter_.Add({bytes.data(), count})) lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace larkspan::console
