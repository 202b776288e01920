#include "console/text/Csv.h"

#include <algorithm>

namespace larkspan::console {

namespace {

bool NeedsQuotes(std::string_view field) {
  return std::any_of(field.begin(), field.end(), [](char letter) {
    return letter == ',' || letter == '"' || static_cast<unsigned char>(letter) < ' ';
  });
}

std::string Quoted(std::string_view field) {
  std::string quoted = "\"";
  for (const char letter : field) {
    if (letter == '"') quoted += '"';
    quoted += letter;
  }
  return quoted + '"';
}

class CsvReader {
 public:
  explicit CsvReader(std::string_view text) : rest_(text) {}

  std::optional<std::vector<CsvRow>> Read() {
    while (!rest_.empty()) {
      std::optional<CsvRow> row = ReadRow();
      if (!row) return std::nullopt;
      if (row->size() > 1 || !row->front().empty()) rows_.push_back(std::move(*row));
    }
    return std::move(rows_);
  }

 private:
  std::optional<CsvRow> ReadRow() {
    CsvRow row;
    while (true) {
      std::optional<std::string> field = ReadField();
      if (!field) return std::nullopt;
      row.push_back(std::move(*field));
      if (Take("\r\n") || Take("\n") || rest_.empty()) return row;
      if (!Take(",")) return std::nullopt;
    }
  }

  std::optional<std::string> ReadField() {
    if (Take("\"")) return ReadQuoted();
    std::size_t end = std::min(rest_.find_first_of(",\n"), rest_.size());
    if (end > 0 && end < rest_.size() && rest_[end] == '\n' && rest_[end - 1] == '\r') --end;
    std::string field(rest_.substr(0, end));
    rest_.remove_prefix(end);
    return field;
  }

  // Behind its first quote.
  std::optional<std::string> ReadQuoted() {
    std::string field;
    while (true) {
      const std::size_t quote = rest_.find('"');
      if (quote == std::string_view::npos) return std::nullopt;
      field += rest_.substr(0, quote);
      rest_.remove_prefix(quote + 1);
      if (!Take("\"")) return field;
      field += '"';
    }
  }

  bool Take(std::string_view text) {
    if (!rest_.starts_with(text)) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  std::string_view rest_;
  std::vector<CsvRow> rows_;
};

}  // namespace

std::string CsvLine(const CsvRow& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != &fields.front()) line += ',';
    line += NeedsQuotes(field) ? Quoted(field) : field;
  }
  return line + "\r\n";
}

std::optional<std::vector<CsvRow>> ParseCsv(std::string_view text) {
  return CsvReader(text).Read();
}

}  // namespace larkspan::console
