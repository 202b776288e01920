// Writing results into what callers hand over. One thread calls.
#pragma once

#include <cstddef>
#include <string_view>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// Text of paths, passwords and names that callers hand over is shorter than this.
inline constexpr std::size_t kTextSize = 1024;
inline constexpr std::size_t kNameSize = 256;
inline constexpr std::size_t kPathSize = 1024;

// Each of the two writes as many whole characters as fit and returns their length in bytes. A null
// place with a size is a strict failure.
notes_api::WORD WriteText(std::string_view notes, char* out, std::size_t size);
notes_api::WORD WriteTextWithNul(std::string_view notes, char* out, std::size_t size);

// Writes only where the caller gave a place.
template <typename T>
void WriteIfWanted(T* out, T value) {
  if (out != nullptr) *out = value;
}

}  // namespace larkspan::standin
