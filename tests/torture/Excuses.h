// The consequences of failing calls that no line of the log tells of, and what each has been taken
// for: a call that fails once has them for one note or file at most, unless it is one that is made
// for all of them.
#pragma once

#include <map>
#include <string>

#include "tests/support/Lines.h"
#include "tests/torture/Expectation.h"

namespace larkspan::torture {

class Excuses {
 public:
  Excuses() = default;
  Excuses(const Expectation& expectation, int failingCalls)
      : silently_(expectation.silently), forAll_(expectation.forAll), failingCalls_(failingCalls) {}

  // Whether one of the consequences, as a bit, explains what is strange about that note or file,
  // which then counts as what so many failing calls have cost.
  bool Explain(unsigned consequence, const std::string& thing, int calls = 1);

  // Adds what was explained more often than calls have failed.
  void AddOverused(Lines& findings) const;

 private:
  unsigned silently_ = kNothing;
  unsigned forAll_ = kNothing;
  int failingCalls_ = 0;
  std::map<unsigned, std::map<std::string, int>> explained_;
};

}  // namespace larkspan::torture
