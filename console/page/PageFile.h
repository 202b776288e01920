// Where the file of a page may lie.
#pragma once

#include <string>

namespace larkspan::console {

// Whether a file's name is that of a page, so that no file of an export has it.
bool IsNamedAsPage(const std::wstring& file);

// Whether a file of this name would lie in the folder, or in a folder of it.
bool LiesInside(const std::wstring& file, const std::wstring& folder);

}  // namespace larkspan::console
