// Entry points for identities: switching to an ID file, opening one, decrypting with it.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/CharacterSet.h"
#include "standin/Pools.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

KeyFile& OpenKeyFile(Runtime& runtime, HKFC handle) {
  for (KeyFile& keyFile : runtime.keyFiles) {
    if (&keyFile != handle) continue;
    Require(keyFile.isOpen, "the ID file was used after it was closed");
    return keyFile;
  }
  StrictFailure("this is no open ID file");
}

// Pools made before the decryption hold garbled values.
void DropGarbledPools(Runtime& runtime, OpenNote& note) {
  for (const auto& item : note.items) {
    if (item->item.isSealed) DropPool(runtime, *item);
  }
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL SECKFMSwitchToIDFile(const char* idFile, const char* password,
                                                char* userName, WORD size, DWORD flags,
                                                void* reserved) {
  const Call call("SECKFMSwitchToIDFile");
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  const std::string_view file = RequireText(idFile, kTextSize);
  runtime.ledger.RecordLast("SECKFMSwitchToIDFile",
                            {{"idFile", NotesToUtf8(file)}, {"size", size}, {"flags", flags}});
  Require(reserved == nullptr, "the reserved argument is not zero");
  IdFile found;
  const STATUS status =
      UnlockIdFile(runtime.IdFilePath(idFile), RequireText(password, kTextSize), &found);
  if (status != kSuccess) return status;
  runtime.userName = found.name;
  if (userName != nullptr) WriteTextWithNul(found.name, userName, size);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL SECKFMGetUserName(char* userName) {
  const Call call("SECKFMGetUserName");
  if (call.stops()) return call.status();
  WriteTextWithNul(call.runtime().userName, userName, kNameSize);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL SECKFMOpen(HKFC* keyFile, const char* idFile, const char* password,
                                      DWORD options, DWORD reserved1, void* reserved2) {
  const Call call("SECKFMOpen");
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  const std::string_view file = RequireText(idFile, kTextSize);
  runtime.ledger.RecordLast("SECKFMOpen", {{"idFile", NotesToUtf8(file)}, {"options", options}});
  Require(keyFile != nullptr, "there is no place for the handle");
  Require(reserved1 == 0 && reserved2 == nullptr, "a reserved argument is not zero");
  IdFile found;
  const STATUS status =
      UnlockIdFile(runtime.IdFilePath(idFile), RequireText(password, kTextSize), &found);
  if (status != kSuccess) return status;
  *keyFile = &runtime.keyFiles.emplace_back(KeyFile{found, true});
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL SECKFMClose(HKFC* keyFile, DWORD reserved1, void* reserved2) {
  const Call call("SECKFMClose");
  if (call.stops()) return call.status();
  Require(keyFile != nullptr, "the handle is missing");
  Require(reserved1 == 0 && reserved2 == nullptr, "a reserved argument is not zero");
  OpenKeyFile(call.runtime(), *keyFile).isOpen = false;
  *keyFile = nullptr;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFNoteCipherDecrypt(DHANDLE note, HKFC keyFile, DWORD options,
                                                DHANDLE* key, DWORD reserved1, void* reserved2) {
  const Call call("NSFNoteCipherDecrypt", {.note = note});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.ledger.RecordLast("NSFNoteCipherDecrypt", {{"options", options}});
  Require(key == nullptr && reserved1 == 0 && reserved2 == nullptr,
          "a reserved argument is not zero");
  OpenNote& opened = runtime.notes.Get(note);
  const std::string& name = OpenKeyFile(runtime, keyFile).id.name;
  const auto& readers = opened.note.sealedFor;
  if (readers.empty() || opened.isDecrypted) return kSuccess;
  if (std::find(readers.begin(), readers.end(), name) == readers.end()) return kNotAReader;
  DropGarbledPools(runtime, opened);
  opened.isDecrypted = true;
  return kSuccess;
}

}  // namespace larkspan::notes_api
