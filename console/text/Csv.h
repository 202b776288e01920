// Tables as comma-separated values: RFC 4180, in UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace larkspan::console {

using CsvRow = std::vector<std::string>;

// One line with its line end. Fields with a comma, a quote or a control character stand in quotes.
std::string CsvLine(const CsvRow& fields);

// The rows of a text; empty lines are none. A line feed alone ends a row too. No value when a quote
// is not closed, or something follows a closed one.
std::optional<std::vector<CsvRow>> ParseCsv(std::string_view text);

}  // namespace larkspan::console
