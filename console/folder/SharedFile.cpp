#include "console/folder/SharedFile.h"

#include <algorithm>

namespace larkspan::console {

namespace {

FileReading WhyNotOpen(DWORD error) {
  const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
  return missing ? FileReading::kMissing : FileReading::kUnreadable;
}

}  // namespace

SharedFile::SharedFile(const std::wstring& path)
    : handle_(CreateFileW(path.c_str(), GENERIC_READ,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                          OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr)) {
  if (handle_ == INVALID_HANDLE_VALUE) state_ = WhyNotOpen(GetLastError());
}

SharedFile::~SharedFile() {
  if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
}

std::optional<std::size_t> SharedFile::Read(std::span<char> buffer) {
  constexpr std::size_t kAtOnce = std::size_t{1} << 20;
  std::size_t taken = 0;
  while (taken < buffer.size()) {
    const auto wanted = static_cast<DWORD>(std::min(buffer.size() - taken, kAtOnce));
    DWORD got = 0;
    if (!ReadFile(handle_, buffer.data() + taken, wanted, &got, nullptr)) return std::nullopt;
    taken += got;
    if (got < wanted) break;
  }
  return taken;
}

std::optional<std::string> SharedFile::ReadAll() {
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  constexpr std::size_t kMost = std::size_t{1} << 30;
  std::string text;
  while (text.size() < kMost) {
    const std::size_t before = text.size();
    text.resize(before + kPiece);
    const std::optional<std::size_t> size = Read({text.data() + before, kPiece});
    if (!size) return std::nullopt;
    text.resize(before + *size);
    if (*size < kPiece) return text;
  }
  return std::nullopt;
}

}  // namespace larkspan::console
