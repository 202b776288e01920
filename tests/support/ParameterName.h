// The names of a parameterized test's cases.
#pragma once

namespace larkspan {

// Names a case by the `name` of its parameter.
inline constexpr auto kNameOf = [](const auto& info) { return info.param.name; };

}  // namespace larkspan
