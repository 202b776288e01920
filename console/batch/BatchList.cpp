#include "console/batch/BatchList.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "console/folder/SharedFile.h"
#include "console/text/Csv.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr std::string_view kUtf16Mark = "\xFF\xFE";

// A name of this machine that the exporter takes too.
constexpr char kLocal[] = "<Local>";

std::string FromUtf16(std::string_view bytes) {
  std::wstring units;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<unsigned char>(bytes[at]);
    const auto high = static_cast<unsigned char>(bytes[at + 1]);
    units.push_back(static_cast<wchar_t>(low | high << 8));
  }
  return WideToUtf8(units);
}

// No value: neither UTF-8 nor marked as UTF-16.
std::optional<std::string> AsUtf8(std::string_view text) {
  if (text.starts_with(kUtf16Mark)) return FromUtf16(text.substr(kUtf16Mark.size()));
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (!IsUtf8(text) || text.find('\0') != std::string_view::npos) return std::nullopt;
  return std::string(text);
}

// Takes each database once. The case of a server's letters does not count.
class Collector {
 public:
  void Add(ListedDatabase database) {
    if (database.server == kLocal) database.server.clear();
    if (seen_.emplace(UpperCase(Utf8ToWide(database.server)), database.path).second) {
      list_.databases.push_back(std::move(database));
    } else {
      ++list_.repeated;
    }
  }

  BatchList Take() { return std::move(list_); }

 private:
  BatchList list_;
  std::set<std::pair<std::wstring, std::string>> seen_;
};

std::string_view WithoutBlanks(std::string_view line) {
  constexpr char kBlanks[] = " \t\r";
  const std::size_t begin = std::min(line.find_first_not_of(kBlanks), line.size());
  return line.substr(begin, line.find_last_not_of(kBlanks) + 1 - begin);
}

ListedDatabase DatabaseOf(std::string_view line) {
  const std::size_t marks = line.find("!!");
  if (marks == std::string_view::npos) return {"", std::string(line), "", false};
  return {std::string(line.substr(0, marks)), std::string(line.substr(marks + 2)), "", false};
}

std::string ParseLines(std::string_view text, Collector& collector) {
  for (std::uint64_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = WithoutBlanks(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty()) continue;
    ListedDatabase database = DatabaseOf(line);
    if (database.path.empty()) return "line " + std::to_string(number) + " names no path";
    collector.Add(std::move(database));
  }
  return {};
}

struct Columns {
  std::optional<std::size_t> server;
  std::optional<std::size_t> path;
  std::optional<std::size_t> title;
  std::optional<std::size_t> kind;
};

std::optional<std::size_t> ColumnOf(const CsvRow& titles, const wchar_t* title) {
  const auto found = std::find_if(titles.begin(), titles.end(), [title](const std::string& given) {
    return IsSameName(Utf8ToWide(given), title);
  });
  if (found == titles.end()) return std::nullopt;
  return static_cast<std::size_t>(found - titles.begin());
}

std::string Field(const CsvRow& row, const std::optional<std::size_t>& column) {
  return column && *column < row.size() ? row[*column] : "";
}

std::string ParseRows(const std::vector<CsvRow>& rows, Collector& collector) {
  const CsvRow& titles = rows.front();
  const Columns columns = {ColumnOf(titles, L"server"), ColumnOf(titles, L"path"),
                           ColumnOf(titles, L"title"), ColumnOf(titles, L"kind")};
  for (std::size_t row = 1; row < rows.size(); ++row) {
    if (rows[row].size() != titles.size()) {
      return "row " + std::to_string(row + 1) + " has " + std::to_string(rows[row].size()) +
             " fields, not " + std::to_string(titles.size());
    }
    ListedDatabase database = {Field(rows[row], columns.server), Field(rows[row], columns.path),
                               Field(rows[row], columns.title),
                               Field(rows[row], columns.kind) == "folder"};
    if (database.path.empty()) return "row " + std::to_string(row + 1) + " names no path";
    collector.Add(std::move(database));
  }
  return {};
}

std::optional<CsvRow> FirstRow(std::string_view text) {
  std::optional<std::vector<CsvRow>> rows = ParseCsv(text.substr(0, text.find_first_of("\r\n")));
  if (!rows || rows->empty()) return std::nullopt;
  return std::move(rows->front());
}

bool HasTitles(const std::optional<CsvRow>& titles) {
  return titles && ColumnOf(*titles, L"server") && ColumnOf(*titles, L"path");
}

// A table begins with its titles.
bool IsTable(std::string_view text) { return HasTitles(FirstRow(text)); }

// A table of other separators than commas, as some spreadsheets write it.
bool IsForeignTable(std::string_view text) {
  std::string first(text.substr(0, text.find_first_of("\r\n")));
  const auto isSeparator = [](char letter) { return letter == ';' || letter == '\t'; };
  if (std::none_of(first.begin(), first.end(), isSeparator)) return false;
  std::replace_if(first.begin(), first.end(), isSeparator, ',');
  return HasTitles(FirstRow(first));
}

// Older shells write the type of its rows above a table.
std::string_view WithoutType(std::string_view text) {
  if (!text.starts_with("#TYPE ")) return text;
  const std::size_t end = text.find('\n');
  return end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
}

bool HasReturnsAlone(std::string_view text) {
  const std::size_t end = text.find('\r');
  return end != std::string_view::npos && end + 1 < text.size() &&
         text.find('\n') == std::string_view::npos;
}

}  // namespace

std::string ParseBatchList(std::string_view text, BatchList& list) {
  Collector collector;
  std::string fault;
  text = WithoutType(text);
  if (HasReturnsAlone(text)) {
    fault = "its lines end in a carriage return alone";
  } else if (IsForeignTable(text)) {
    fault = "its fields are not separated by commas";
  } else if (IsTable(text)) {
    const std::optional<std::vector<CsvRow>> rows = ParseCsv(text);
    fault = rows ? ParseRows(*rows, collector) : "its quotes do not fit";
  } else {
    fault = ParseLines(text, collector);
  }
  if (fault.empty()) list = collector.Take();
  return fault;
}

std::string ReadBatchList(const std::wstring& file, BatchList& list) {
  const std::optional<std::string> bytes = SharedFile(file).ReadAll();
  if (!bytes) return "it cannot be read";
  const std::optional<std::string> text = AsUtf8(*bytes);
  if (!text) return "it is no UTF-8 text";
  return ParseBatchList(*text, list);
}

}  // namespace larkspan::console
