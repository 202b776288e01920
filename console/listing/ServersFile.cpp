#include "console/listing/ServersFile.h"

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// The names are in ascending order, so an empty one that the configuration has comes first, and
// once: any other empty line is a name that was not translated.
void TakeName(ServersFile& servers, const TextLine& line) {
  if (!line.isWhole) return servers.faults.Add(line, "is not whole");
  if (!IsUtf8(line.text)) return servers.faults.Add(line, "is no UTF-8");
  if (!line.text.empty()) {
    servers.names.emplace_back(line.text);
  } else if (line.number == 1) {
    servers.beginsEmpty = true;
  } else {
    servers.faults.Add(line, "is empty: the Notes library does not translate that name");
  }
}

}  // namespace

ServersFile ReadServersFile(const std::wstring& path) {
  ServersFile servers;
  servers.reading = ReadTextLines(path, [&](const TextLine& line) { TakeName(servers, line); });
  return servers;
}

}  // namespace larkspan::console
