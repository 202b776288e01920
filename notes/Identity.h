// Who the Notes library works for, and the opening of sealed notes with an ID file.
#pragma once

#include <string>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Switches to an ID file with its password, both in UTF-16. Does nothing, and succeeds, when either
// of them is empty; kPathNotTranslated when either is not translated in full.
Status SwitchId(const std::wstring& idFile, const std::wstring& password);

// The current user's name in the Notes character set, at most 255 bytes.
Status GetCurrentUserName(std::string& name);

// Decrypts an open note, in memory, with an ID file and its password, both in UTF-16;
// kPathNotTranslated when either is not translated in full.
Status DecryptNote(const Note& note, const std::wstring& idFile, const std::wstring& password);

}  // namespace larkspan
