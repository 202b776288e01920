#include "console/listing/DatabaseTexts.h"

#include <algorithm>
#include <cmath>

#include "console/account/AccountJson.h"
#include "console/listing/ScanValues.h"
#include "console/show/Table.h"
#include "console/show/TextWidth.h"
#include "console/text/Csv.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr double kTwoTo64 = 18446744073709551616.0;

const char* KindOf(const ScanEntry& entry) { return entry.isFolder ? "folder" : "database"; }

bool IsWhole(double number) {
  return std::isfinite(number) && std::trunc(number) == number &&
         !(number == 0 && std::signbit(number));
}

// A whole number without a point as far as one can be written; what is no number as a text.
Json SizeToJson(double bytes) {
  if (!std::isfinite(bytes)) return SizeOf(bytes);
  if (IsWhole(bytes) && bytes >= 0 && bytes < kTwoTo64) return static_cast<std::uint64_t>(bytes);
  if (IsWhole(bytes) && bytes >= -kTwoTo63 && bytes < 0) return static_cast<std::int64_t>(bytes);
  return bytes;
}

std::string SizeForPerson(const ScanEntry& entry) {
  const double bytes = entry.bytes;
  if (entry.isFolder) return "folder";
  if (IsWhole(bytes) && bytes >= 0 && bytes < kTwoTo64)
    return GroupedText(static_cast<std::uint64_t>(bytes));
  return SizeOf(bytes);
}

// The most important columns first.
Table WholeTable(const ScanFile& scan) {
  Table table;
  table.columns = {{"Path", false, true},
                   {"Title", false, true},
                   {"Bytes", true, false},
                   {"Data modified", false, false},
                   {"Design modified", false, false},
                   {"Identifier", false, false}};
  table.rows.reserve(scan.entries.size());
  for (const ScanEntry& entry : scan.entries) {
    table.rows.push_back({entry.path, entry.title, SizeForPerson(entry), entry.dataModified,
                          entry.designModified, entry.identifier});
  }
  return table;
}

// How wide the column has to be for a person.
int LeastWidth(const Table& table, std::size_t column) {
  // Of a path or a title so much tells enough.
  constexpr int kEnough = 20;
  int widest = ColumnsOf(table.columns[column].title);
  for (const auto& row : table.rows) widest = std::max(widest, ColumnsOf(row[column]));
  return table.columns[column].isShortened ? std::min(widest, kEnough) : widest;
}

// Path, title and size stay in any window.
void LeaveOutUntilFit(Table& table, int width) {
  constexpr std::size_t kStaying = 3;
  constexpr int kGap = 2;
  int used = -kGap;
  std::size_t fitting = 0;
  for (; fitting < table.columns.size(); ++fitting) {
    used += LeastWidth(table, fitting) + kGap;
    if (fitting >= kStaying && used > width) break;
  }
  table.columns.resize(fitting);
  for (auto& row : table.rows) row.resize(fitting);
}

std::string TableFor(const ScanFile& scan, int width) {
  Table table = WholeTable(scan);
  if (width > 0) LeaveOutUntilFit(table, width);
  return TableText(table, width);
}

std::string Csv(const std::string& server, const ScanFile& scan) {
  std::string text = CsvLine({"server", "path", "title", "data_modified", "design_modified",
                              "bytes", "identifier", "kind"});
  for (const ScanEntry& entry : scan.entries) {
    text += CsvLine({server, entry.path, entry.title, entry.dataModified, entry.designModified,
                     SizeOf(entry.bytes), entry.identifier, KindOf(entry)});
  }
  return text;
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

Json EntryToJson(const std::string& server, const ScanEntry& entry) {
  return {{"server", server},
          {"path", TextOrNull(entry.path)},
          {"title", TextOrNull(entry.title)},
          {"data_modified", TextOrNull(entry.dataModified)},
          {"design_modified", TextOrNull(entry.designModified)},
          {"bytes", SizeToJson(entry.bytes)},
          {"identifier", entry.identifier},
          {"kind", KindOf(entry)}};
}

std::string JsonDocument(const std::string& server, const ScanFile& scan) {
  Json databases = Json::array();
  for (const ScanEntry& entry : scan.entries) databases.push_back(EntryToJson(server, entry));
  const Json document = {{"format", "larkspan-databases"},
                         {"version", 1},
                         {"server", server},
                         {"server_named", scan.serverNamed ? Json(*scan.serverNamed) : Json()},
                         {"databases", std::move(databases)}};
  return JsonText(document, -1) + "\n";
}

}  // namespace

std::string DatabasesText(const std::string& server, const ScanFile& scan, ListingFormat format,
                          int width) {
  switch (format) {
    case ListingFormat::kCsv:
      return Csv(server, scan);
    case ListingFormat::kJson:
      return JsonDocument(server, scan);
    case ListingFormat::kTable:
      break;
  }
  return TableFor(scan, width);
}

}  // namespace larkspan::console
