// The version message box, the only thing that the program ever shows.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace larkspan {

// The product version in the module's version resource; nothing when the resource or its string is
// missing. A null module is the program itself.
std::optional<std::wstring> ProductVersion(HMODULE module);

// Shows the program's product version until the user closes the box; shows nothing when there is
// none.
void ShowVersionBox();

}  // namespace larkspan
