#include "console/listing/Databases.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/OutputPaths.h"
#include "console/listing/DatabaseTexts.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr char kThisMachine[] = "<Local>";

std::string WhyNoScan(const ScanFile& scan) {
  switch (scan.reading) {
    case FileReading::kMissing:
      return "larkspan.exe has written no scan.txt";
    case FileReading::kUnreadable:
      return "scan.txt cannot be read";
    case FileReading::kRead:
      break;
  }
  return scan.hasFirstLine ? "" : "scan.txt does not begin with a server";
}

std::string SummaryOf(const ScanFile& scan) {
  const auto folders = static_cast<std::uint64_t>(
      std::count_if(scan.entries.begin(), scan.entries.end(),
                    [](const ScanEntry& entry) { return entry.isFolder; }));
  return CountText(scan.entries.size() - folders, "database", "databases") + " and " +
         CountText(folders, "folder", "folders");
}

}  // namespace

ListingContent DatabasesContent(const std::string& server, ScanFile scan) {
  ListingContent content;
  content.whyNone = WhyNoScan(scan);
  content.entries = scan.entries.size();
  content.summary = SummaryOf(scan);
  content.faults = scan.faults.Sentences();
  content.faultCount = scan.faults.Count();
  content.text = [server, kept = std::make_shared<const ScanFile>(std::move(scan))](
                     ListingFormat format, int width) {
    return DatabasesText(server, *kept, format, width);
  };
  return content;
}

ListingKind DatabasesOf(const std::string& server) {
  const bool isHere = server.empty() || server == kThisMachine;
  const std::string asked = isHere ? "" : server;
  ListingKind kind;
  kind.file = output::kScan;
  kind.arguments = {L"-scan", L"-s", Utf8ToWide(isHere ? kThisMachine : server)};
  kind.subject = "the databases of " + (isHere ? "this machine" : "'" + server + "'");
  kind.place = asked;
  kind.read = [asked](const std::wstring& path) {
    return DatabasesContent(asked, ReadScanFile(path));
  };
  return kind;
}

}  // namespace larkspan::console
