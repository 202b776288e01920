#include "tests/support/FileBytes.h"

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace larkspan {

std::string ReadBytes(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary);
  if (!file) throw std::runtime_error("a file that should exist cannot be opened");
  return std::string(std::istreambuf_iterator<char>(file), {});
}

void WriteBytes(const std::wstring& path, std::string_view bytes) {
  std::ofstream file(std::filesystem::path(path), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("a test's file cannot be written");
}

void MakeFolder(const std::wstring& path) {
  if (!CreateDirectoryW(path.c_str(), nullptr)) {
    throw std::runtime_error("a test's folder cannot be made");
  }
}

bool Exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

Lines SplitLines(const std::string& bytes) {
  Lines lines;
  for (std::size_t start = 0; start < bytes.size();) {
    const std::size_t end = bytes.find('\n', start);
    if (end == std::string::npos || end == start || bytes[end - 1] != '\r') {
      throw std::runtime_error("a line does not end in carriage return and line feed");
    }
    lines.push_back(bytes.substr(start, end - 1 - start));
    start = end + 1;
  }
  return lines;
}

Lines ReadLines(const std::wstring& path) { return SplitLines(ReadBytes(path)); }

}  // namespace larkspan
