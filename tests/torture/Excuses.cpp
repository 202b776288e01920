#include "tests/torture/Excuses.h"

namespace larkspan::torture {

bool Excuses::Explain(unsigned consequence, const std::string& thing) {
  if ((silently_ & consequence) == 0) return false;
  explained_[consequence].insert(thing);
  return true;
}

void Excuses::AddOverused(testing::Lines& findings) const {
  for (const auto& [consequence, things] : explained_) {
    const bool isForAll = (forAll_ & consequence) != 0;
    if (isForAll || things.size() <= static_cast<std::size_t>(failingCalls_)) continue;
    std::string text = std::to_string(failingCalls_) + " calls failed and cost";
    for (const std::string& thing : things) text += " " + thing;
    findings.push_back(text);
  }
}

}  // namespace larkspan::torture
