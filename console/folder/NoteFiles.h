// The files of notes in an archive.
#pragma once

#include <cstdint>
#include <string>

namespace larkspan::console {

// Whether the note lies in one of the three folders for notes; a raw copy alone is no note.
bool HasNoteFile(const std::wstring& folder, std::uint32_t note);

// Whether there is any file in one of these folders.
bool HasAnyNoteFile(const std::wstring& folder);

}  // namespace larkspan::console
