#include "tests/fuzz/native/MemoryFiles.h"

#include <cerrno>
#include <cstdlib>
#include <map>
#include <memory>
#include <utility>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "tests/fuzz/Target.h"

namespace larkspan {

namespace {

// A stream for writing, whose bytes become the file's when it is closed. The stream knows the
// addresses of the two members below.
struct Writing {
  std::wstring path;
  char* bytes = nullptr;  // Owned; allocated by the stream.
  std::size_t size = 0;
};

std::map<std::wstring, std::string> files;
std::map<std::FILE*, std::unique_ptr<Writing>> writings;

std::FILE* OpenForReading(const std::wstring& path) {
  const auto file = files.find(path);
  if (file == files.end()) {
    errno = ENOENT;
    return nullptr;
  }
  return fmemopen(file->second.data(), file->second.size(), "r");
}

std::FILE* OpenForWriting(const std::wstring& path) {
  auto writing = std::make_unique<Writing>();
  writing->path = path;
  std::FILE* const file = open_memstream(&writing->bytes, &writing->size);
  fuzz::Require(file != nullptr, "a stream is made");
  writings[file] = std::move(writing);
  return file;
}

}  // namespace

bool FileExists(const std::wstring& path) { return files.contains(path); }

namespace fuzz {

void SetMemoryFile(const std::wstring& path, std::string_view bytes) { files[path] = bytes; }

}  // namespace fuzz

namespace file_system {

UniqueFile Open(const std::wstring& path, const wchar_t* mode) {
  const std::wstring_view wanted = mode;
  fuzz::Require(wanted == L"r" || wanted == L"w", "a file is read, or written anew");
  return UniqueFile(wanted == L"r" ? OpenForReading(path) : OpenForWriting(path));
}

std::size_t Write(std::FILE* file, std::string_view bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), file);
}

bool Flush(std::FILE* file) { return std::fflush(file) == 0; }

bool Close(UniqueFile file) {
  std::FILE* const stream = file.release();
  const bool isClosed = std::fclose(stream) == 0;
  if (const auto node = writings.extract(stream)) {
    const Writing& writing = *node.mapped();
    files[writing.path].assign(writing.bytes, writing.size);
    std::free(writing.bytes);
  }
  return isClosed;
}

Appended Append(const std::wstring& path, std::string_view bytes) {
  files[path] += bytes;
  return {.opened = true, .written = bytes.size(), .complete = true};
}

bool Delete(const std::wstring& path) { return files.erase(path) == 1; }

UniqueFile OpenTemporary() { return UniqueFile(std::tmpfile()); }

}  // namespace file_system

}  // namespace larkspan
