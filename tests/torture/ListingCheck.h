// What is in a listing is held against a run without a fault.
#pragma once

#include <set>
#include <string>

#include "tests/torture/FaultCase.h"
#include "tests/torture/Listing.h"

namespace larkspan::torture {

// The beginning of the line that tells of an exception out of the library.
inline constexpr char kListingException[] = "The listing was ended by an exception";
inline constexpr char kListingCrash[] = "The listing was ended by a crash";

// A scan whose search ends has the line of the server, and that of a match that was handed over.
inline std::size_t LinesBeforeTheEnd(bool afterAMatch) { return afterAMatch ? 2 : 1; }

struct ListingCheck {
  const Listing& listing;
  const Outcome& clean;
  const Outcome& run;
  unsigned silently = 0;            // Consequences that need no line, from Expectation.h.
  FaultCase fault{};                // The one that struck, if one did.
  std::set<std::string> servers{};  // Of the list of servers: those that the address books tell.
  int failingCalls = 0;             // At most so many fields differ.
  bool endedEarly = false;          // The process died: lines are missing at the end.
  Lines& findings;

  void Find(const std::string& finding) const { findings.push_back(finding); }
  bool Allows(unsigned consequence) const { return (silently & consequence) != 0; }
};

// After an ERROR line the listing is empty, or ends early by an exception; otherwise it is, line
// by line and field by field, that of the clean run, or lacks exactly what the fault explains.
// Every line is whole, and there is no file but the listing and the log.
void CheckListing(const ListingCheck& check);

// The same of the fields of a scan.
void CheckScanFields(const ListingCheck& check, const Lines& lines);

}  // namespace larkspan::torture
