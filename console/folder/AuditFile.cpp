// A block is its lines in their order, each at most once. The table below has one row a line; where
// a line is not in its place, or none of these, the report was changed by another hand or cut.
#include "console/folder/AuditFile.h"

#include <charconv>
#include <string_view>
#include <utility>

#include "base/OutputPaths.h"
#include "console/folder/TextLines.h"

namespace larkspan::console {

namespace {

using Row = AuditRow;

struct RowText {
  Row row;
  std::string_view begin;
};

constexpr std::array<RowText, kAuditRows> kRows = {
    RowText{Row::kStarted, "Archive started at: "},
    RowText{Row::kUser, "Set user to: "},
    RowText{Row::kServer, "Archive database server: "},
    RowText{Row::kPath, "Archive database path  : "},
    RowText{Row::kWithFullAccess, "Archive with full access admin"},
    RowText{Row::kWithoutFullAccess, "Archive without full access admin"},
    RowText{Row::kSizeBefore, "Database size before archive: "},
    RowText{Row::kSizeAfter, "Database size after archive : "},
    RowText{Row::kEnded, "Archive ended at: "},
    RowText{Row::kRuntime, "Total runtime (seconds): "},
    RowText{Row::kListed, "Database total documents : "},
    RowText{Row::kCountsTitle, "Exported Document Counts"},
    RowText{Row::kData, "Data   : "},
    RowText{Row::kDesign, "Design : "},
    RowText{Row::kProfile, "Profile: "},
    RowText{Row::kExported, "Exported total documents : "},
    RowText{Row::kFailed, "Failed total documents   : "},
    RowText{Row::kProcessed, "Total documents processed: "},
    RowText{Row::kWarned, "Documents exported with warnings : "},
    RowText{Row::kTellsOfLosses,
            "Some documents were not exported successfully. See log.txt for details."},
};

// Two lines that exclude each other have one place.
int PlaceOf(Row row) {
  return static_cast<int>(row == Row::kWithoutFullAccess ? Row::kWithFullAccess : row);
}

bool HasNoValue(Row row) {
  return row == Row::kWithFullAccess || row == Row::kWithoutFullAccess ||
         row == Row::kCountsTitle || row == Row::kTellsOfLosses;
}

const RowText* FindRow(std::string_view line) {
  for (const RowText& text : kRows)
    if (HasNoValue(text.row) ? line == text.begin : line.starts_with(text.begin)) return &text;
  return nullptr;
}

std::optional<std::uint64_t> ParseNumber(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number);
  if (fault != std::errc() || stop != end) return std::nullopt;
  return number;
}

using Places = std::array<bool, kRows.size()>;

class BlockReader {
 public:
  void Take(const TextLine& line) {
    const RowText* const row = FindRow(line.text);
    if (row != nullptr && row->row == Row::kStarted) Begin();
    CheckForm(line, row);
    if (row != nullptr) TakeValue(row->row, line.text.substr(row->begin.size()));
  }

  AuditFacts Facts(FileReading reading) {
    facts_.reading = reading;
    facts_.isClosed = IsThere(Row::kEnded);
    facts_.tellsOfLosses = IsThere(Row::kTellsOfLosses);
    facts_.block.cameToItsEnd = IsThere(Row::kSizeAfter);
    if (facts_.block.cameToItsEnd) Require(Row::kServer, Row::kSizeBefore, wasSeen_);
    if (facts_.isClosed) Require(Row::kEnded, Row::kWarned, {});
    return std::move(facts_);
  }

 private:
  // A run that was taken up again does not tell once more what it is of.
  void Begin() {
    const AuditBlock earlier = std::exchange(facts_, AuditFacts()).block;
    facts_.isBegun = true;
    facts_.block.user = earlier.user;
    facts_.block.server = earlier.server;
    facts_.block.path = earlier.path;
    facts_.block.fullAccess = earlier.fullAccess;
    facts_.block.sizeBefore = earlier.sizeBefore;
    for (std::size_t place = 0; place < seen_.size(); ++place) wasSeen_[place] |= seen_[place];
    seen_ = {};
    last_ = -1;
  }

  void CheckForm(const TextLine& line, const RowText* row) {
    const std::string which = "line " + std::to_string(line.number) + " of audit.txt ";
    if (row == nullptr || !line.isWhole) {
      facts_.faults.push_back(which + "is not as the program writes it");
      if (row == nullptr) return;
    }
    const int place = PlaceOf(row->row);
    if (place <= last_) facts_.faults.push_back(which + "does not belong there");
    last_ = std::max(last_, place);
    seen_[static_cast<std::size_t>(place)] = true;
  }

  void TakeValue(Row row, std::string_view value) {
    AuditBlock& block = facts_.block;
    switch (row) {
      case Row::kStarted:
        block.started = value;
        break;
      case Row::kUser:
        block.user = value;
        break;
      case Row::kServer:
        block.server = value;
        break;
      case Row::kPath:
        block.path = value;
        break;
      case Row::kWithFullAccess:
        block.fullAccess = true;
        break;
      case Row::kWithoutFullAccess:
        block.fullAccess = false;
        break;
      case Row::kSizeBefore:
        block.sizeBefore = TakeSize(value);
        break;
      case Row::kSizeAfter:
        block.sizeAfter = TakeSize(value);
        break;
      case Row::kEnded:
        block.ended = value;
        break;
      case Row::kRuntime:
        block.runtimeSeconds = value;
        break;
      default:
        TakeNumber(row, value);
    }
  }

  std::optional<std::uint64_t> TakeSize(std::string_view value) {
    const std::optional<std::uint64_t> size = ParseNumber(value);
    if (!size && value != "unavailable")
      facts_.faults.push_back("audit.txt tells a size of the database that is none");
    return size;
  }

  void TakeNumber(Row row, std::string_view value) {
    if (HasNoValue(row)) return;
    std::optional<std::uint64_t>& number = facts_.numbers[static_cast<std::size_t>(row)];
    number = ParseNumber(value);
    if (!number)
      facts_.faults.push_back("audit.txt has no number behind '" + AuditLabel(row) + "'");
  }

  bool IsThere(Row row) const { return seen_[static_cast<std::size_t>(PlaceOf(row))]; }

  void Require(Row first, Row last, const Places& alsoThere) {
    for (const RowText& text : kRows)
      if (text.row >= first && text.row <= last && !IsThere(text.row) &&
          !alsoThere[static_cast<std::size_t>(PlaceOf(text.row))])
        facts_.faults.push_back("audit.txt lacks the line '" + std::string(text.begin) + "'");
  }

  AuditFacts facts_;
  Places seen_{};
  Places wasSeen_{};  // In earlier blocks.
  int last_ = -1;
};

}  // namespace

std::string AuditLabel(AuditRow row) {
  const std::string_view begin = kRows[static_cast<std::size_t>(row)].begin;
  return std::string(begin.substr(0, begin.find_last_not_of(" :") + 1));
}

AuditFacts ReadAuditFile(const std::wstring& folder) {
  BlockReader reader;
  const FileReading reading = ReadTextLines(output::Join(folder, output::kAudit),
                                            [&](const TextLine& line) { reader.Take(line); });
  return reader.Facts(reading);
}

}  // namespace larkspan::console
