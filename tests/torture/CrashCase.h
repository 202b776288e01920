// One call of the Notes library in which the process dies.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace larkspan::torture {

struct Death {
  std::string action;  // As fault plans call it.
  // The exit codes that the process can end with. An exception ends the worker in good order, or,
  // on the way through a release, the process as a call of abort does. A thread may have no stack
  // left to report that there is none.
  std::set<std::uint32_t> exitCodes;
  std::optional<std::uint32_t> exitArgument = std::nullopt;  // Another exit code of "exit" than 1.
};

struct CrashCase {
  std::string entry;
  int call = 1;  // Counted from 1, in each process.
  Death death;
  bool afterAPart = false;  // It hands over a chunk of text, or a match, before.
  bool isCore = false;
};

// As a fault plan in JSON.
std::string PlanOf(const CrashCase& crash);

std::string Describe(const CrashCase& crash);

// The export of a note crashes: of the last one, and of one between it and the first.
inline bool IsCore(const CrashCase& crash) { return crash.isCore; }

// The first and the last call of every entry point in each way to die, and each call in between in
// one of the ways, which take turns from one call to the next and from one seed to the next.
std::vector<CrashCase> CrashCases(const std::map<std::string, int>& calls, std::uint32_t seed);

}  // namespace larkspan::torture
