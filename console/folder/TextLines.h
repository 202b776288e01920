// The lines of a text file of an export, one at a time, whatever the size of the file.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

struct TextLine {
  std::string_view text;  // Without its line end; of one that is longer than 64 KB the beginning.
  std::uint64_t number = 0;  // From 1 on.
  bool isWhole = true;       // Ends as the program ends its lines, and nothing of it is left out.
};

// kUnreadable also when the system refuses in the middle.
FileReading ReadTextLines(const std::wstring& path,
                          const std::function<void(const TextLine&)>& visit);

}  // namespace larkspan::console
