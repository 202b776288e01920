// Bytes as the library hands them out, and numbers in them: low byte first, at any place.
// Stateless; any thread may call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin {

using Bytes = std::vector<notes_api::BYTE>;

// Sizes are in bytes, at most 8.
void AppendNumber(Bytes* out, std::uint64_t number, std::size_t size);
std::uint64_t NumberAt(const notes_api::BYTE* at, std::size_t size);
notes_api::WORD WordAt(const notes_api::BYTE* at);

void AppendText(Bytes* out, std::string_view text);
void AppendBytes(Bytes* out, const Bytes& bytes);

}  // namespace larkspan::standin
