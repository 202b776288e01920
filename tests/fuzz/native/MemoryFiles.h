// Files in memory behind the product's door to files, for targets that are not Windows programs.
// Only what the readers and writers of whole files call is there: a target that needs more of the
// door does not link.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::fuzz {

// Makes the file or replaces its content. No stream of it may be open.
void SetMemoryFile(const std::wstring& path, std::string_view bytes);

}  // namespace larkspan::fuzz
