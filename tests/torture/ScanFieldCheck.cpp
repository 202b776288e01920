// A scan has a line for the server and then a line of six fields for each database. What the
// library does not tell is empty; a size is the sum of two parts, either of which may be missing.
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/support/FileBytes.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/ListingCheck.h"
#include "tests/torture/Subject.h"

namespace larkspan::torture {

namespace {

using nlohmann::json;

constexpr std::size_t kFields = 6;
constexpr std::size_t kTimes[] = {2, 3};
constexpr std::size_t kSize = 4;
constexpr std::size_t kIdentifier = 5;

Lines FieldsOf(const std::string& line) {
  Lines fields;
  std::size_t start = 0;
  for (std::size_t tab = line.find('\t'); tab != std::string::npos; tab = line.find('\t', start)) {
    fields.push_back(line.substr(start, tab - start));
    start = tab + 1;
  }
  fields.push_back(line.substr(start));
  return fields;
}

std::string SizeText(double size) { return std::to_string(std::bit_cast<std::int64_t>(size)); }

double NumberOf(const json& items, const char* name) {
  return items.value(name, json::object()).value("number", 0.0);
}

// The texts that a size can have when a part of it is not told, by the database's path.
std::map<std::string, std::set<std::string>> PartialSizes(const Listing& listing) {
  std::map<std::string, std::set<std::string>> sizes;
  const json directory =
      json::parse(ReadBytes(std::wstring(kOwnData) + listing.folder + L"/directory.json"));
  for (const json& entry : directory.at("entries")) {
    const json& items = entry.at("items");
    sizes[items.at("$Path").at("text").get<std::string>()] = {
        SizeText(0), SizeText(NumberOf(items, "$Length")),
        SizeText(NumberOf(items, "$DAOSSTOREDBYTES"))};
  }
  return sizes;
}

// The day and the time of day are told by different calls.
bool LacksAPart(const std::string& time, const std::string& whole) {
  constexpr std::int64_t kDay = 8640000;
  constexpr std::int64_t kFirstDay = 1721424;
  const std::int64_t hundredths = std::atoll(whole.c_str());
  return time == std::to_string(hundredths % kDay - kFirstDay * kDay) ||
         time == std::to_string(hundredths - hundredths % kDay) ||
         time == std::to_string(-kFirstDay * kDay);
}

class ScanFieldCheck {
 public:
  ScanFieldCheck(const ListingCheck& check, const Lines& lines)
      : check_(check),
        lines_(lines),
        clean_(LinesOf(check.clean.tree, check.listing.file)),
        sizes_(PartialSizes(check.listing)) {}

  void Run() {
    if (lines_.size() > clean_.size()) return check_.Find("there are too many lines");
    const std::size_t expected =
        check_.Allows(kEndsEarly) ? LinesBeforeTheEnd(check_.fault.afterAPart) : clean_.size();
    if (lines_.size() != expected) {
      check_.Find("there are " + std::to_string(lines_.size()) + " lines");
    }
    const std::string first = check_.Allows(kAsked) ? check_.listing.asked : clean_.at(0);
    if (lines_.empty() || lines_.front() != first) check_.Find("the first line is not " + first);
    for (std::size_t i = 1; i < lines_.size(); ++i) CheckLine(lines_[i], FieldsOf(clean_[i]));
    if (differences_ > check_.failingCalls) {
      check_.Find(std::to_string(differences_) + " fields differ");
    }
  }

 private:
  void CheckLine(const std::string& line, const Lines& clean) {
    const Lines fields = FieldsOf(line);
    if (fields.size() != kFields) return check_.Find("no line of six fields: " + line);
    for (std::size_t i = 0; i < kFields; ++i) {
      if (fields[i] == clean[i]) continue;
      ++differences_;
      if (!MayDiffer(i, fields[i], clean)) {
        check_.Find("field " + std::to_string(i + 1) + " of " + clean[0] + ": " + fields[i]);
      }
    }
  }

  bool MayDiffer(std::size_t field, const std::string& text, const Lines& clean) const {
    if (field == kIdentifier) return false;  // It is handed over with the match.
    if (field == kSize) return check_.Allows(kUntold) && sizes_.at(clean[0]).contains(text);
    if (text.empty()) return check_.Allows(kUntold);
    const bool isTime = field == kTimes[0] || field == kTimes[1];
    return isTime && check_.Allows(kOtherTime) && LacksAPart(text, clean[field]);
  }

  const ListingCheck& check_;
  const Lines& lines_;
  const Lines clean_;
  const std::map<std::string, std::set<std::string>> sizes_;
  int differences_ = 0;
};

}  // namespace

void CheckScanFields(const ListingCheck& check, const Lines& lines) {
  ScanFieldCheck(check, lines).Run();
}

}  // namespace larkspan::torture
