// After a line that the disk refuses none is written: a listing with a gap would name the wrong
// server or leave databases out unseen.
#include "listing/ListingFile.h"

#include <cstdio>
#include <utility>

#include "base/FileSystem.h"
#include "base/Settings.h"

namespace larkspan {

// Without a buffer, each line is on its way when it is written.
bool ListingFile::Open(std::wstring_view name) {
  file_ = file_system::Open(InOutputFolder(name), L"w");
  if (!file_) return false;
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);
  return true;
}

void ListingFile::WriteLine(std::string_view line) {
  if (!isWritten_) return;
  const std::string bytes = std::string(line) + '\n';
  if (file_system::Write(file_.get(), bytes) < bytes.size()) isWritten_ = false;
}

bool ListingFile::Close() { return file_system::Close(std::move(file_)) && isWritten_; }

}  // namespace larkspan
