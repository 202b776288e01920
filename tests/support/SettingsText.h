// Settings in words, for comparison and for messages.
#pragma once

#include <string>
#include <vector>

#include "base/Settings.h"

namespace larkspan {

// The settings that differ from the defaults, in the order of their declaration: "name=value", a
// flag as its name alone, each runtime argument as "runtime=" and its text. The program path is
// left out.
std::vector<std::wstring> ChangedSettings(const Settings& settings);

}  // namespace larkspan
