// One failing call of the Notes library.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace larkspan::torture {

// A status without a meaning of its own, and that of a form that has to be repaired.
inline constexpr std::uint16_t kAnyStatus = 585;
inline constexpr std::uint16_t kFormNeedsRepair = 575;

struct FaultCase {
  std::string entry;
  int call = 1;  // Counted from 1.
  bool andAllLater = false;
  std::uint16_t status = 0;
  bool afterAPart = false;  // It hands over a chunk of text, or a match, before it fails.
};

// What a library does that fails so, as a fault plan in JSON. Where it could not release something,
// it refuses to release what that belongs to as well.
std::string PlanOf(const FaultCase& fault);

std::string Describe(const FaultCase& fault);

// Each entry point fails once, at its first call.
bool IsCore(const FaultCase& fault);

// Every call that a run made, failing in every way that applies.
std::vector<FaultCase> FaultCases(const std::map<std::string, int>& calls);

// What a sweep over those cases has to print of itself.
std::string FiguresOf(const std::map<std::string, int>& calls, std::size_t cases);

// Whether the status is one of damaged content, for which an export is tried again.
bool IsDamage(std::uint16_t status);

}  // namespace larkspan::torture
