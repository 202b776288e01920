// Note IDs: 32-bit numbers that identify the notes of one database.
#pragma once

#include <cstdint>

namespace larkspan {

// No note: as a resume note ID it makes the process the supervisor, as a marker's value it means
// that the export is complete.
inline constexpr std::uint32_t kNoNoteId = 0xFFFFFFFF;

}  // namespace larkspan
