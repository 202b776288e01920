// The folder that an export goes into, before the exporter is started and after it has ended.
#pragma once

#include <cstdint>
#include <string>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

// The path with its drive, without a backslash at its end unless it is the root of a drive.
std::wstring WholePath(const std::string& path);

// Makes the folder, and those above it, and writes a probe into it that it takes away again. Empty
// when the folder is there, empty and can be written to; else a sentence that says why not.
std::string MakeEmptyFolder(const std::wstring& folder);

bool FolderExists(const std::wstring& folder);
bool IsEmptyFolder(const std::wstring& folder);

// Held by the one console program that may work in a folder.
class FolderLock {
 public:
  explicit FolderLock(std::wstring folder);

  // False: another one is at work there.
  bool IsHeld() const { return isHeld_; }

 private:
  SystemHandle mutex_;
  bool isHeld_ = false;
};

// acl.dxl and db.dxl of a run that is taken up again in the same folder: the exporter does not
// replace an acl.dxl, and says something untrue of it.
void MoveDatabaseFilesAside(const std::wstring& folder);

// Puts back what the later run did not make, and takes the rest away. True when that was acl.dxl.
bool SettleDatabaseFiles(const std::wstring& folder);

// The same for the design file of a note that is tried again.
void MoveDesignFileAside(const std::wstring& folder, std::uint32_t note);

// What is aside of a note that has its file again is taken away, and that of one that failed again,
// by the log, is put back. That of a note that was not tried yet stays: with its file in place it
// would count as finished.
void SettleDesignFiles(const std::wstring& folder);

// The notes that have their files straight in the folder.
std::uint64_t CountPlainNotes(const std::wstring& folder);

}  // namespace larkspan::console
