#include "tests/torture/Excuses.h"

namespace larkspan::torture {

bool Excuses::Explain(unsigned consequence, const std::string& thing, int calls) {
  if ((silently_ & consequence) == 0) return false;
  explained_[consequence][thing] = calls;
  return true;
}

void Excuses::AddOverused(testing::Lines& findings) const {
  for (const auto& [consequence, things] : explained_) {
    int calls = 0;
    std::string text = std::to_string(failingCalls_) + " calls failed and cost";
    for (const auto& [thing, needed] : things) {
      calls += needed;
      text += " " + thing;
    }
    const bool isForAll = (forAll_ & consequence) != 0;
    if (!isForAll && calls > failingCalls_) findings.push_back(text);
  }
}

}  // namespace larkspan::torture
