// The translated password is wiped before each call returns, whatever came of it; the library is
// called only when file and password are translated in full.
#include "notes/Identity.h"

#include <array>
#include <string_view>

#include "base/Wipe.h"
#include "notes/Handles.h"
#include "notes/StatusCodes.h"
#include "notes/Text.h"

namespace larkspan {

namespace {

constexpr std::size_t kUserNameSize = 256;

// The library gives names ended with a NUL; the byte behind keeps one there whatever it wrote.
using UserNameBuffer = std::array<char, kUserNameSize + 1>;

// An ID file and its password in the Notes character set. The password does not stay in memory.
class Credentials {
 public:
  Credentials() = default;
  ~Credentials() { Wipe(password_); }
  Credentials(const Credentials&) = delete;
  Credentials& operator=(const Credentials&) = delete;

  // False when one of them is not translated in full.
  bool Translate(std::wstring_view idFile, std::wstring_view password) {
    return WideToNotes(idFile, idFile_) && WideToNotes(password, password_);
  }

  const char* idFile() const { return idFile_.c_str(); }
  const char* password() const { return password_.c_str(); }

 private:
  std::string idFile_;
  std::string password_;
};

}  // namespace

Status SwitchId(const std::wstring& idFile, const std::wstring& password) {
  constexpr notes_api::DWORD kFlags = 8;
  if (idFile.empty() || password.empty()) return Status();
  Credentials credentials;
  if (!credentials.Translate(idFile, password)) return kPathNotTranslated;
  UserNameBuffer userName{};
  return Status(notes_api::SECKFMSwitchToIDFile(credentials.idFile(), credentials.password(),
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
  Credentials credentials;
  if (!credentials.Translate(idFile, password)) return kPathNotTranslated;
  KeyFile keyFile;
  const Status opened = AcquireHandle(keyFile, [&](notes_api::HKFC* address) {
    return notes_api::SECKFMOpen(address, credentials.idFile(), credentials.password(), kOptions, 0,
                                 nullptr);
  });
  if (!opened.ok()) return opened;
  return Status(
      notes_api::NSFNoteCipherDecrypt(note.get(), keyFile.get(), kOptions, nullptr, 0, nullptr));
}

}  // namespace larkspan
