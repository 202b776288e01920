// servers.txt, as larkspan.exe writes it for -servers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/folder/SharedFile.h"
#include "console/listing/LineFaults.h"

namespace larkspan::console {

struct ServersFile {
  FileReading reading = FileReading::kMissing;
  std::vector<std::string> names;  // UTF-8, in the order of the file.

  // The first line is empty: the mail server's name is, or one that the library does not translate.
  bool beginsEmpty = false;

  LineFaults faults{"servers.txt"};  // Of lines without a name.
};

ServersFile ReadServersFile(const std::wstring& path);

}  // namespace larkspan::console
