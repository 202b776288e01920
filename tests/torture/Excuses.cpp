#include "tests/torture/Excuses.h"

#include <algorithm>

namespace larkspan::torture {

bool Excuses::Explain(unsigned consequence, const std::string& thing, int calls) {
  if ((silently_ & consequence) == 0) return false;
  explained_[consequence][thing] = calls;
  return true;
}

void Excuses::AddOverused(Lines& findings) const {
  std::map<std::string, int> callsFor;
  for (const auto& [consequence, things] : explained_) {
    if ((forAll_ & consequence) != 0) continue;
    for (const auto& [thing, calls] : things) callsFor[thing] = std::max(callsFor[thing], calls);
  }
  int needed = 0;
  std::string text = std::to_string(failingCalls_) + " calls failed and cost";
  for (const auto& [thing, calls] : callsFor) {
    needed += calls;
    text += " " + thing;
  }
  if (needed > failingCalls_) findings.push_back(text);
}

}  // namespace larkspan::torture
