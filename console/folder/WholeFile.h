// A file that this program writes for others: there whole, or as it was before.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::console {

// Writes the bytes beside the file's place and moves them there, over an earlier one. False when
// that cannot be done; an earlier file then stays, and no half one is left.
bool WriteWholeFile(const std::wstring& file, std::string_view bytes);

}  // namespace larkspan::console
