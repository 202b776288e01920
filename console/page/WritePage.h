// The file of the page: there whole, or as it was before.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::console {

// Writes the page beside its place and moves it there, over an earlier one. False when that cannot
// be done; an earlier page then stays, and no half one is left.
bool WritePage(const std::wstring& file, std::string_view page);

// Whether a file's name is that of a page, so that no file of an export has it.
bool IsNamedAsPage(const std::wstring& file);

// Whether a file of this name would lie in the folder, or in a folder of it.
bool LiesInside(const std::wstring& file, const std::wstring& folder);

}  // namespace larkspan::console
