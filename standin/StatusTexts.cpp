#include "standin/StatusTexts.h"

#include <string_view>

#include "standin/StatusCodes.h"

namespace larkspan::standin {

namespace {

struct Entry {
  notes_api::STATUS status;
  std::string_view text;
};

constexpr Entry kTexts[] = {
    {kSuccess, "No error"},
    {kFileDoesNotExist, "File does not exist"},
    {260, "File is in use and cannot be deleted"},
    {264, "File cannot be renamed"},
    {270, "Error writing to file"},
    {kOutOfMemory, "Insufficient memory"},
    {kNotesIniNotFound, "Unable to find the file notes.ini"},
    {kNoteDoesNotExist, "Note does not exist in the database"},
    {kItemNotFound, "Item does not exist in the note"},
    {kDatabaseDamaged, "Database file is damaged"},
    {kNoteHasNoView, "Note is not a view or folder"},
    {kWrongItemType, "Item is of another type"},
    {kNoQuotaInformation, "Database has no quota information"},
    {kCollectionInUse, "View index is in use"},
    {kViewHasNoIndex, "View has no index"},
    {kEntryTooLarge, "View entry is too large"},
    {kNoSuchListEntry, "List has no such entry"},
    {kNumberTooLong, "Number is too long for its place"},
    {kNoSuchPosition, "View has no entry at the position"},
    {575, "Form holds a field that cannot be exported"},
    {kNoAccess, "You are not authorized to open the database"},
    {kNoServer, "Server cannot be reached"},
    {kNoAddressBook, "Address book does not exist"},
    {kNoNameSpace, "Address book has no such name space"},
    {kNameDamaged, "Name is not a distinguished name"},
    {1173, "Rich text is damaged"},
    {kUnknownExporterProperty, "Exporter property is unknown"},
    {kIdFileNotFound, "ID file does not exist"},
    {kNoDecryptionKey, "Document cannot be decrypted: the key is missing from the ID file"},
    {kIdFileDamaged, "ID file is damaged"},
    {kWrongPassword, "Wrong password"},
    {kNotAReader, "Document is encrypted for other users"},
    {6967, "Design of the database cannot be exported"},
    {6968, "Design of the database is hidden"},
    {8209, "Configuration names no mail server"},
};

constexpr notes_api::STATUS kFirstDamage = 0x3600;
constexpr notes_api::STATUS kLastDamage = 0x361F;

}  // namespace

std::string StatusText(notes_api::STATUS status) {
  const auto number = static_cast<notes_api::STATUS>(status & notes_api::kErrorMask);
  for (const Entry& entry : kTexts) {
    if (entry.status == number) return std::string(entry.text);
  }
  if (number >= kFirstDamage && number <= kLastDamage) {
    return "Record of rich text is damaged (" + std::to_string(number) + ")";
  }
  return "Notes error " + std::to_string(number);
}

}  // namespace larkspan::standin
