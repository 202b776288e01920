// After a line that the disk refuses none is written: a listing with a gap would name the wrong
// server or leave databases out unseen.
#include "listing/ListingFile.h"

#include <utility>

#include "base/FileSystem.h"
#include "base/LineEnds.h"
#include "base/Settings.h"

namespace larkspan {

bool ListingFile::Open(std::wstring_view name) {
  file_ = file_system::Open(InOutputFolder(name), L"wb");
  return file_ != nullptr;
}

void ListingFile::WriteLine(std::string_view line) {
  if (!isWritten_) return;
  bytes_.clear();
  AppendWithCarriageReturns(line, bytes_);
  bytes_.append("\r\n");
  if (file_system::WriteThrough(file_.get(), bytes_) < bytes_.size()) isWritten_ = false;
}

bool ListingFile::Close() { return file_system::Close(std::move(file_)) && isWritten_; }

}  // namespace larkspan
