// The product's room behind the door: every call goes to the system as it came.
#include "base/FileSystem.h"

#include "base/SystemFiles.h"

namespace larkspan::file_system {

UniqueFile Open(const std::wstring& path, const wchar_t* mode) {
  return UniqueFile(system_files::Open(path, mode));
}

UniqueFile OpenTemporary() { return UniqueFile(system_files::OpenTemporary()); }

std::size_t Write(std::FILE* file, std::string_view bytes) {
  return system_files::Write(file, bytes);
}

std::size_t WriteThrough(std::FILE* file, std::string_view bytes) {
  return system_files::WriteThrough(file, bytes);
}

bool Flush(std::FILE* file) { return system_files::Flush(file); }

bool Close(UniqueFile file) { return system_files::Close(file.release()); }

Appended Append(const std::wstring& path, std::string_view bytes) {
  return system_files::Append(path, bytes);
}

bool Delete(const std::wstring& path) { return system_files::Delete(path); }

bool Move(const std::wstring& from, const std::wstring& to, Earlier earlier) {
  return system_files::Move(from, to, earlier == Earlier::kIsReplaced);
}

bool CreateFolder(const std::wstring& path) { return system_files::CreateFolder(path); }

}  // namespace larkspan::file_system
