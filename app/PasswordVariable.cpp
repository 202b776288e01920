// An empty variable is none. The length is asked for first, so that a password of any length is
// read whole.
#include "app/PasswordVariable.h"

#include <windows.h>

#include <string>

#include "base/Wipe.h"

namespace larkspan {

namespace {

constexpr wchar_t kVariable[] = L"LARKSPAN_PASSWORD";

void TakePasswordVariable(ParsedCommandLine& line) {
  if (line.settings.idFile.empty() || line.hasPassword) return;
  const DWORD size = GetEnvironmentVariableW(kVariable, nullptr, 0);
  if (size == 0) return;
  std::wstring& password = line.settings.idPassword;
  password.resize(size);
  const DWORD length = GetEnvironmentVariableW(kVariable, password.data(), size);
  password.resize(length < size ? length : 0);
}

}  // namespace

void SettlePassword(Role role, ParsedCommandLine& line) {
  if (role == Role::kSupervisor) {
    Wipe(line.settings.idPassword);
    return;
  }
  TakePasswordVariable(line);
  SetEnvironmentVariableW(kVariable, nullptr);
}

}  // namespace larkspan
