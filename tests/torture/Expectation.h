// What may follow from a failing call: the lines that the run log then holds, and those
// consequences that no line tells of. Everything else has to be as in a run without a fault.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace larkspan::torture {

// Consequences without a line, as bits. They follow from calls that have no status to tell of their
// failure, or whose failure means something else too.
enum Silently : unsigned {
  kNothing = 0,
  kFileElsewhere = 1 << 0,     // A note's class or name is unknown: its file is in another folder.
  kOtherExporter = 1 << 1,     // Its pictures are not seen: it is exported with conversion.
  kNoRawCopy = 1 << 2,         // Its body or view format is not seen.
  kKeepsItems = 1 << 3,        // Items that were to be deleted are still in its file.
  kStaysSealed = 1 << 4,       // Nobody knows that it is sealed.
  kUnidUnknown = 1 << 5,       // Its universal ID is all zeros.
  kViewsDiffer = 1 << 6,       // Views are missing, have gaps, or are there although hidden.
  kPropertiesDiffer = 1 << 7,  // Texts and times of db.dxl are missing.
  kAuditDiffers = 1 << 8,      // Texts of the audit report are missing.
  kOtherTime = 1 << 9,         // A time lacks its days or its time of day.
  kTriedAgain = 1 << 10,       // A note that looks damaged is exported with less.
  kRepaired = 1 << 11,         // A form that looks damaged is repaired, or one that is is not.
  kNotIndexed = 1 << 12,       // Its line of the UNID index is missing.
  // In a listing:
  kUntold = 1 << 13,      // A field of a database is empty, a size is zero or a part of it.
  kEndsEarly = 1 << 14,   // Lines are missing at the end.
  kAsked = 1 << 15,       // The server is named as it was asked for.
  kNamesEmpty = 1 << 16,  // Servers are empty lines.
};

enum class Tells { kAlways, kSometimes, kNever };

struct Expectation {
  std::string_view entry;
  Tells tells = Tells::kNever;
  std::vector<std::string_view> complaints{};  // The beginnings of lines, behind their level.
  unsigned silently = kNothing;
  // Kinds of handles, for a release that fails: what it was to release, and what that belongs to.
  std::vector<std::string_view> leftOpen{};
  unsigned forAll = kNothing;  // Those that one call has for all notes or views.
};

// Of a call of an export, and of a call of a listing. Throws when the table has no such entry
// point.
const Expectation& ExpectationOf(const std::string& entry);
const Expectation& ListingExpectationOf(const std::string& entry);

// The expectation of the table for the entry point, likewise.
const Expectation& FindExpectation(const std::vector<Expectation>& table, const std::string& entry);

}  // namespace larkspan::torture
