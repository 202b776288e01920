// The tests' room behind the door to files: each operation first asks the plan, then the system.
// A stream whose write failed fails its close too, as it does in the C runtime.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include "base/FileSystem.h"
#include "base/SystemFiles.h"
#include "tests/faults/FileFaults.h"

namespace larkspan::file_system {

namespace {

constexpr char kTemporaryFile[] = "(temporary)";

struct Stream {
  std::string name;
  std::optional<FileError> failure;
};

// The open streams. One that was opened elsewhere has no name.
class Streams {
 public:
  void Add(std::FILE* file, Stream stream) {
    const std::lock_guard lock(mutex_);
    streams_[file] = std::move(stream);
  }
  Stream Get(std::FILE* file) {
    const std::lock_guard lock(mutex_);
    return streams_[file];
  }
  Stream Take(std::FILE* file) {
    const std::lock_guard lock(mutex_);
    Stream stream = std::move(streams_[file]);
    streams_.erase(file);
    return stream;
  }

 private:
  std::mutex mutex_;
  std::map<std::FILE*, Stream> streams_;
};

Streams& OpenStreams() {
  static Streams& streams = *new Streams;
  return streams;
}

void Fail(const FileError& error) {
  errno = error.runtimeError;
  SetLastError(error.systemError);
}

// Counts an operation that has nothing to do but fail.
bool Fails(const std::string& operation, const std::string& file) {
  const auto fault = CountFileOperation(operation, file);
  if (fault) Fail(fault->error);
  return fault.has_value();
}

// A stream of the file whose handle bears this access only, whatever the mode.
std::FILE* OpenWithAccess(const std::wstring& path, DWORD access, const wchar_t* mode) {
  const HANDLE handle = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return _wfdopen(_open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY), mode);
}

// What is read does not pass the door, so a fault of the reads opens a stream that gives nothing.
std::FILE* OpenToRead(const std::wstring& path, const std::string& name, const wchar_t* mode) {
  return CountFileOperation("read", name) ? OpenWithAccess(path, FILE_READ_ATTRIBUTES, mode)
                                          : system_files::Open(path, mode);
}

// The same holds of the temporary file.
std::FILE* OpenTemporaryToUse() {
  if (CountFileOperation("read", kTemporaryFile)) {
    return OpenWithAccess(L"NUL", GENERIC_WRITE, L"w+b");
  }
  return system_files::OpenTemporary();
}

UniqueFile Named(std::FILE* file, const std::string& name) {
  if (file != nullptr) OpenStreams().Add(file, {name, std::nullopt});
  return UniqueFile(file);
}

}  // namespace

UniqueFile Open(const std::wstring& path, const wchar_t* mode) {
  const std::string name = FileNameOf(path);
  if (Fails("open", name)) return nullptr;
  const bool reads = mode[0] == L'r';
  return Named(reads ? OpenToRead(path, name, mode) : system_files::Open(path, mode), name);
}

UniqueFile OpenTemporary() {
  if (Fails("open", kTemporaryFile)) return nullptr;
  return Named(OpenTemporaryToUse(), kTemporaryFile);
}

namespace {

// Whatever the way to the system, a write is a write for a plan.
template <typename SystemWrite>
std::size_t WriteBy(SystemWrite write, std::FILE* file, std::string_view bytes) {
  Stream stream = OpenStreams().Get(file);
  const auto fault = CountFileOperation("write", stream.name);
  if (!fault) return write(file, bytes);
  const std::size_t written = write(file, bytes.substr(0, fault->bytes));
  if (fault->error.runtimeError != 0) {
    stream.failure = fault->error;
    OpenStreams().Add(file, stream);
  }
  Fail(fault->error);
  return written;
}

}  // namespace

std::size_t Write(std::FILE* file, std::string_view bytes) {
  return WriteBy(system_files::Write, file, bytes);
}

std::size_t WriteThrough(std::FILE* file, std::string_view bytes) {
  return WriteBy(system_files::WriteThrough, file, bytes);
}

bool Flush(std::FILE* file) {
  return !Fails("flush", OpenStreams().Get(file).name) && system_files::Flush(file);
}

bool Close(UniqueFile file) {
  Stream stream = OpenStreams().Take(file.get());
  if (const auto fault = CountFileOperation("close", stream.name)) stream.failure = fault->error;
  const bool closed = system_files::Close(file.release());
  if (stream.failure) Fail(*stream.failure);
  return closed && !stream.failure;
}

Appended Append(const std::wstring& path, std::string_view bytes) {
  const std::string name = FileNameOf(path);
  if (Fails("open", name)) return {};
  auto failure = CountFileOperation("write", name);
  Appended appended = system_files::Append(path, failure ? bytes.substr(0, failure->bytes) : bytes);
  if (const auto closing = CountFileOperation("close", name)) failure = closing;
  if (failure) {
    Fail(failure->error);
    appended.complete = false;
  }
  return appended;
}

bool Delete(const std::wstring& path) {
  return !Fails("delete", FileNameOf(path)) && system_files::Delete(path);
}

bool Move(const std::wstring& from, const std::wstring& to, Earlier earlier) {
  return !Fails("move", FileNameOf(to)) &&
         system_files::Move(from, to, earlier == Earlier::kIsReplaced);
}

bool CreateFolder(const std::wstring& path) {
  return !Fails("folder", FileNameOf(path)) && system_files::CreateFolder(path);
}

}  // namespace larkspan::file_system
