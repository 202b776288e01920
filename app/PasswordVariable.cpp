// An empty variable is none. The length is asked for first, so that a password of any length is
// read whole.
#include "app/PasswordVariable.h"

#include <windows.h>

namespace larkspan {

namespace {

constexpr wchar_t kVariable[] = L"LARKSPAN_PASSWORD";

}  // namespace

void TakePasswordVariable(Settings& settings) {
  if (settings.idFile.empty() || !settings.idPassword.empty()) return;
  const DWORD size = GetEnvironmentVariableW(kVariable, nullptr, 0);
  if (size == 0) return;
  settings.idPassword.resize(size);
  const DWORD length = GetEnvironmentVariableW(kVariable, settings.idPassword.data(), size);
  settings.idPassword.resize(length < size ? length : 0);
}

void RemovePasswordVariable() { SetEnvironmentVariableW(kVariable, nullptr); }

}  // namespace larkspan
