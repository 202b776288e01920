#include "tests/torture/ListingCheck.h"

#include <algorithm>

#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"

namespace larkspan::torture {

namespace {

bool WasEndedByAnException(const Lines& log) { return CountMessages(log, kListingException) != 0; }

// Whether the lines are the first ones of the others.
bool Begin(const Lines& lines, const Lines& others) {
  return lines.size() <= others.size() && std::equal(lines.begin(), lines.end(), others.begin());
}

// The names that are listed are those that the address books tell, in the order of the clean run.
// One that cannot be translated is an empty line in its place.
void CheckNames(const ListingCheck& check, const Lines& lines) {
  Lines names = LinesOf(check.clean.tree, check.listing.file);
  std::erase_if(names, [&](const std::string& name) { return !check.servers.contains(name); });
  if (names.size() != check.servers.size()) check.Find("the address books tell of other servers");
  const bool mayBeEmpty = check.Allows(kNamesEmpty);
  const bool agree = std::equal(lines.begin(), lines.end(), names.begin(), names.end(),
                                [&](const auto& line, const auto& name) {
                                  return line == name || (mayBeEmpty && line.empty());
                                });
  if (!agree) {
    check.Find("the names are not those that the address books tell:");
    for (const std::string& line : lines) check.Find("  " + line);
  }
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
