// The files that a system puts into a folder whenever somebody looks at it.
#pragma once

#include <string_view>

#include "console/text/Utf.h"

namespace larkspan::console {

inline bool IsOfTheSystem(std::wstring_view name) {
  return IsSameName(name, L"desktop.ini") || IsSameName(name, L"Thumbs.db");
}

}  // namespace larkspan::console
