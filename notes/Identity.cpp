#include "notes/Identity.h"

#include <array>

#include "notes/Handles.h"
#include "notes/Text.h"

namespace larkspan {

namespace {

constexpr std::size_t kUserNameSize = 256;

// The library gives names ended with a NUL; the byte behind keeps one there whatever it wrote.
using UserNameBuffer = std::array<char, kUserNameSize + 1>;

}  // namespace

Status SwitchId(const std::wstring& idFile, const std::wstring& password) {
  constexpr notes_api::DWORD kFlags = 8;
  if (idFile.empty() || password.empty()) return Status();
  const std::string idFileText = WideToNotes(idFile);
  const std::string passwordText = WideToNotes(password);
  UserNameBuffer userName{};
  return Status(notes_api::SECKFMSwitchToIDFile(idFileText.c_str(), passwordText.c_str(),
                                                userName.data(), kUserNameSize, kFlags, nullptr));
}

Status GetCurrentUserName(std::string& name) {
  UserNameBuffer buffer{};
  const Status status(notes_api::SECKFMGetUserName(buffer.data()));
  name = buffer.data();
  return status;
}

Status DecryptNote(const Note& note, const std::wstring& idFile, const std::wstring& password) {
  constexpr notes_api::DWORD kOptions = 1;
  const std::string idFileText = WideToNotes(idFile);
  const std::string passwordText = WideToNotes(password);
  KeyFile keyFile;
  const Status opened = AcquireHandle(keyFile, [&](notes_api::HKFC* address) {
    return notes_api::SECKFMOpen(address, idFileText.c_str(), passwordText.c_str(), kOptions, 0,
                                 nullptr);
  });
  if (!opened.ok()) return opened;
  return Status(
      notes_api::NSFNoteCipherDecrypt(note.get(), keyFile.get(), kOptions, nullptr, 0, nullptr));
}

}  // namespace larkspan
