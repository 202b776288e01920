// One sequence as what is left of another.
#pragma once

namespace larkspan::torture {

// Whether each element has a match among the others, all in their order.
template <typename Elements, typename Matches>
bool AreFoundIn(const Elements& elements, const Elements& others, Matches matches) {
  auto other = others.begin();
  for (const auto& element : elements) {
    while (other != others.end() && !matches(element, *other)) ++other;
    if (other == others.end()) return false;
    ++other;
  }
  return true;
}

}  // namespace larkspan::torture
