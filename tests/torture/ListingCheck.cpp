#include "tests/torture/ListingCheck.h"

#include <algorithm>
#include <iterator>

#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"

namespace larkspan::torture {

namespace {

bool WasEndedByAnException(const Lines& log) { return CountMessages(log, kListingException) != 0; }

// Whether the lines are the first ones of the others.
bool Begin(const Lines& lines, const Lines& others) {
  return lines.size() <= others.size() && std::equal(lines.begin(), lines.end(), others.begin());
}

// The names that are listed are names of the clean run in its order. One that cannot be translated
// is an empty line in its place.
void CheckNames(const ListingCheck& check, const Lines& lines) {
  const Lines clean = LinesOf(check.clean.tree, check.listing.file);
  const bool mayBeEmpty = check.Allows(kNamesEmpty);
  auto line = lines.begin();
  for (const std::string& name : clean) {
    const bool isThere = line != lines.end() && (*line == name || (mayBeEmpty && line->empty()));
    if (isThere) ++line;
    if (!isThere && !check.Allows(kNamesMissing)) check.Find("a name is missing: " + name);
  }
  if (line != lines.end()) check.Find("a strange name: " + *line);
  const auto empty = std::count(lines.begin(), lines.end(), "");
  if (empty > check.failingCalls) check.Find(std::to_string(empty) + " names are empty");
}

void CheckFiles(const ListingCheck& check) {
  for (const auto& [name, content] : check.run.tree) {
    if (name != check.listing.file && name != "log.txt") check.Find(name + " was left behind");
  }
  if (!check.run.tree.contains(check.listing.file)) check.Find("there is no listing");
}

}  // namespace

void CheckListing(const ListingCheck& check) {
  CheckFiles(check);
  const Lines lines = LinesOf(check.run.tree, check.listing.file);
  const Lines clean = LinesOf(check.clean.tree, check.listing.file);
  if (check.endedEarly || WasEndedByAnException(check.run.log)) {
    if (!Begin(lines, clean)) check.Find("the listing is not the beginning of the whole one");
  } else if (HasErrorLine(check.run.log)) {
    if (!lines.empty()) check.Find("the listing is not empty although it failed");
  } else if (check.listing.server.empty()) {
    CheckNames(check, lines);
  } else {
    CheckScanFields(check, lines);
  }
}

}  // namespace larkspan::torture
