// The statuses that the stand-in library returns by itself; a fault plan may name any other. Where
// the program reacts to a number, the number here is that one; the rest are the library's own.
#pragma once

#include "notes/NotesApi.h"

namespace larkspan::standin {

inline constexpr notes_api::STATUS kSuccess = 0;
inline constexpr notes_api::STATUS kFileDoesNotExist = 259;
inline constexpr notes_api::STATUS kOutOfMemory = 273;
inline constexpr notes_api::STATUS kNotesIniNotFound = 0x1A5;
inline constexpr notes_api::STATUS kNoteDoesNotExist = 551;
inline constexpr notes_api::STATUS kItemNotFound = 552;
inline constexpr notes_api::STATUS kDatabaseDamaged = 554;
inline constexpr notes_api::STATUS kNoteHasNoView = 556;
inline constexpr notes_api::STATUS kWrongItemType = 560;
inline constexpr notes_api::STATUS kNoQuotaInformation = 562;
inline constexpr notes_api::STATUS kCollectionInUse = 564;
inline constexpr notes_api::STATUS kViewHasNoIndex = 566;
inline constexpr notes_api::STATUS kEntryTooLarge = 568;
inline constexpr notes_api::STATUS kNoSuchListEntry = 570;
inline constexpr notes_api::STATUS kNumberTooLong = 572;
inline constexpr notes_api::STATUS kNoSuchPosition = 574;
inline constexpr notes_api::STATUS kNoAccess = 582;
inline constexpr notes_api::STATUS kNoServer = 586;
inline constexpr notes_api::STATUS kNoAddressBook = 588;
inline constexpr notes_api::STATUS kNoNameSpace = 590;
inline constexpr notes_api::STATUS kNameDamaged = 592;
inline constexpr notes_api::STATUS kUnknownExporterProperty = 1180;
inline constexpr notes_api::STATUS kIdFileNotFound = 6400;
inline constexpr notes_api::STATUS kNoDecryptionKey = 6402;
inline constexpr notes_api::STATUS kIdFileDamaged = 6403;
inline constexpr notes_api::STATUS kWrongPassword = 6408;
inline constexpr notes_api::STATUS kNotAReader = 6411;

}  // namespace larkspan::standin
