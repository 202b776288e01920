// Where the sample databases of the stand-in library lie.
#pragma once

#include <string>

namespace larkspan::testing {

std::wstring SampleDataFolder();

}  // namespace larkspan::testing
