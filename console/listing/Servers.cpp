#include "console/listing/Servers.h"

#include <memory>
#include <utility>

#include "base/OutputPaths.h"
#include "console/account/AccountJson.h"
#include "console/show/Table.h"
#include "console/text/Csv.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

using Names = std::vector<std::string>;

std::string WhyNoServers(const ServersFile& servers) {
  switch (servers.reading) {
    case FileReading::kMissing:
      return "larkspan.exe has written no servers.txt";
    case FileReading::kUnreadable:
      return "servers.txt cannot be read";
    case FileReading::kRead:
      break;
  }
  const bool hasLines = !servers.names.empty() || servers.beginsEmpty || servers.faults.Count() > 0;
  return hasLines ? "" : "servers.txt is empty";
}

std::string ServersTable(const Names& names, int width) {
  Table table;
  table.columns = {{"Server", false, true}};
  for (const std::string& name : names) table.rows.push_back({name});
  return TableText(table, width);
}

std::string ServersCsv(const Names& names) {
  std::string text = CsvLine({"server"});
  for (const std::string& name : names) text += CsvLine({name});
  return text;
}

std::string ServersJson(const Names& names) {
  return JsonText({{"format", "larkspan-servers"}, {"version", 1}, {"servers", names}}, -1) + "\n";
}

std::string ServersText(const Names& names, ListingFormat format, int width) {
  switch (format) {
    case ListingFormat::kCsv:
      return ServersCsv(names);
    case ListingFormat::kJson:
      return ServersJson(names);
    case ListingFormat::kTable:
      break;
  }
  return ServersTable(names, width);
}

}  // namespace

ListingContent ServersContent(ServersFile servers) {
  ListingContent content;
  content.whyNone = WhyNoServers(servers);
  content.entries = servers.names.size();
  content.summary = CountText(servers.names.size(), "server", "servers");
  content.faults = servers.faults.Sentences();
  content.faultCount = servers.faults.Count();
  if (servers.beginsEmpty) {
    content.remarks = {
        "the first line of servers.txt is empty: MailServer has no name, or the Notes library does "
        "not translate it"};
  }
  content.text = [names = std::make_shared<const Names>(std::move(servers.names))](
                     ListingFormat format, int width) {
    return ServersText(*names, format, width);
  };
  return content;
}

ListingKind KnownServers() {
  ListingKind kind;
  kind.file = output::kServers;
  kind.arguments = {L"-servers"};
  kind.subject = "the servers";
  kind.place = "servers";
  kind.read = [](const std::wstring& path) { return ServersContent(ReadServersFile(path)); };
  return kind;
}

}  // namespace larkspan::console
