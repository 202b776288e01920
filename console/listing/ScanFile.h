// scan.txt, as larkspan.exe writes it for -scan.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "console/folder/SharedFile.h"
#include "console/listing/LineFaults.h"

namespace larkspan::console {

// One database or folder. Texts are UTF-8; empty is what the library did not tell.
struct ScanEntry {
  std::string path;
  std::string title;
  std::string dataModified;  // ISO 8601, or the field as it stands when it is no such time.
  std::string designModified;
  double bytes = 0;  // 0 also when the library does not tell it.
  std::string identifier;
  bool isFolder = false;
};

struct ScanFile {
  FileReading reading = FileReading::kMissing;
  bool hasFirstLine = false;
  std::optional<std::string> serverNamed;  // The first line, where its bytes can be trusted.
  std::vector<ScanEntry> entries;          // In the order of the file.
  LineFaults faults{"scan.txt"};           // Of lines that are no entry.
};

ScanFile ReadScanFile(const std::wstring& path);

}  // namespace larkspan::console
