// What the command line asks for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/torture/Report.h"

namespace larkspan::torture {

struct Options {
  std::uint32_t seed = 1;  // Of what is chosen at random.
  std::size_t sample = 0;  // So many cases of each subject, and those at its core; 0: all.
  std::size_t shard = 0;   // This process takes each shards-th case, beginning with this one.
  std::size_t shards = 1;
  std::string subject;   // Only the subject of this name.
  std::string only;      // Only the cases whose description holds this text.
  bool samples = false;  // The sample databases, not the small one.
  bool trace = false;    // Each case is named before it is run.

  bool Wants(const std::string& name) const { return subject.empty() || subject == name; }
};

// Takes over one argument of the command line. Throws std::invalid_argument when it is no option,
// or its value none of that option.
void ReadOption(const std::string& argument, Options& options);

// The indices of what this process is to look at, ascending; where the vector is true, it belongs
// to every sample. All processes whose options differ in the shard only choose from the same one.
std::vector<std::size_t> ChooseIndices(const Options& options, const std::vector<bool>& isCore);

// Leaves the cases that this process is to run. Each has a description, by Describe, and IsCore
// tells whether it belongs to every sample. The report hears of those that all processes run.
template <typename Case>
void Choose(const Options& options, std::vector<Case>& cases, Report& report) {
  std::erase_if(cases, [&](const Case& one) {
    return Describe(one).find(options.only) == std::string::npos;
  });
  report.AddWanted(cases.size());
  std::vector<bool> isCore;
  for (const Case& one : cases) isCore.push_back(IsCore(one));
  std::vector<Case> chosen;
  for (const std::size_t index : ChooseIndices(options, isCore)) chosen.push_back(cases[index]);
  cases = chosen;
}

}  // namespace larkspan::torture
