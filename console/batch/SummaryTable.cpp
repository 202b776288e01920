#include "console/batch/Summary.h"
#include "console/text/Csv.h"
#include "console/text/Times.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::string Number(std::uint64_t number) { return std::to_string(number); }

// The counts of an export that had nothing to judge are not known.
std::string NumberOf(const BatchEntry& entry, std::uint64_t NoteCounts::*count) {
  return entry.counts ? Number((*entry.counts).*count) : "";
}

CsvRow RowOf(const BatchEntry& entry) {
  const auto seconds = SecondsBetween(entry.since, entry.ended);
  const auto judged = [&](std::uint64_t number) { return entry.counts ? Number(number) : ""; };
  return {entry.database.server,
          entry.database.path,
          entry.database.title,
          StateWord(entry),
          entry.code ? Number(static_cast<std::uint64_t>(*entry.code)) : "",
          entry.reason,
          NumberOf(entry, &NoteCounts::listed),
          NumberOf(entry, &NoteCounts::exported),
          NumberOf(entry, &NoteCounts::lost),
          judged(entry.losses),
          judged(entry.findings),
          judged(entry.warnings),
          entry.started,
          entry.ended,
          seconds ? Number(*seconds) : "",
          WideToUtf8(entry.folder),
          WideToUtf8(entry.out)};
}

}  // namespace

std::string SummaryTable(const std::vector<BatchEntry>& entries) {
  std::string table(kByteOrderMark);
  table += CsvLine({"server", "path", "title", "state", "exit_code", "reason", "listed", "exported",
                    "lost", "losses", "findings", "warnings", "started", "ended", "seconds",
                    "folder", "lies_in"});
  for (const BatchEntry& entry : entries) table += CsvLine(RowOf(entry));
  return table;
}

}  // namespace larkspan::console
