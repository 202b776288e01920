// The statuses that the program knows by their numbers: its own, which travel where one of the
// library does, and those of the library that it acts on.
#pragma once

#include "notes/Status.h"

namespace larkspan {

// Our own. Where no words stand here, the run log shows those that the library has for the number.
inline constexpr Status kTemporaryFileNotDeleted{260};
inline constexpr Status kFileNotMoved{264};
inline constexpr Status kOutputNotWritten{270};
inline constexpr Status kMemoryNotLocked{272, L"Memory of the Notes library cannot be locked"};
inline constexpr Status kPathNotTranslated{
    274, L"Text is too long for the Notes library or cannot be put into its characters"};
inline constexpr Status kNoKeyToDecrypt{6402};  // No ID file or no password was given.
inline constexpr Status kNoMailServer{0x2011};

// The library's.
inline constexpr Status kConfigurationNotFound{0x1A5};
inline constexpr Status kFormNeedsRepair{575};
inline constexpr Status kDesignNotExported{6967};
inline constexpr Status kDesignElementNotExported{6968};

// Whether the rich text of a note is damaged: one status, and a range of them.
constexpr bool IsDamage(Status status) {
  constexpr Status kDamagedDocument{1173};
  constexpr notes_api::STATUS kFirstDamagedRichText = 0x3600;
  constexpr notes_api::STATUS kLastDamagedRichText = 0x361F;
  return status == kDamagedDocument ||
         (status.code() >= kFirstDamagedRichText && status.code() <= kLastDamagedRichText);
}

}  // namespace larkspan
