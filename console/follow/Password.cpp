#include "console/follow/Password.h"

#include <windows.h>

#include <array>
#include <optional>

#include "base/FileSystem.h"
#include "base/Wipe.h"
#include "console/follow/SystemHandle.h"
#include "console/show/Output.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kVariable[] = L"LARKSPAN_PASSWORD";
constexpr std::size_t kLongestPassword = 1024;

// The first line, without a byte order mark.
std::wstring FirstLine(std::string text) {
  text.resize(std::min(text.find_first_of("\r\n"), text.size()));
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  std::wstring line = Utf8ToWide(text);
  Wipe(text);
  return line;
}

std::optional<std::wstring> ReadPasswordFile(const std::string& path) {
  const file_system::UniqueFile file = file_system::Open(Utf8ToWide(path), L"rb");
  if (!file) return std::nullopt;
  std::setbuf(file.get(), nullptr);
  std::string text(kLongestPassword, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  std::wstring password = FirstLine(text);
  Wipe(text);
  return password;
}

std::wstring FromEnvironment() {
  std::wstring password(GetEnvironmentVariableW(kVariable, nullptr, 0), L'\0');
  if (password.empty()) return password;
  password.resize(
      GetEnvironmentVariableW(kVariable, password.data(), static_cast<DWORD>(password.size())));
  return password;
}

// Switches the echo of a terminal off for as long as it lives.
class WithoutEcho {
 public:
  explicit WithoutEcho(HANDLE terminal) : terminal_(terminal) {
    GetConsoleMode(terminal_, &mode_);
    SetConsoleMode(terminal_, (mode_ | ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT) &
                                  ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  }
  ~WithoutEcho() { SetConsoleMode(terminal_, mode_); }
  WithoutEcho(const WithoutEcho&) = delete;
  WithoutEcho& operator=(const WithoutEcho&) = delete;

 private:
  HANDLE terminal_;
  DWORD mode_ = 0;
};

std::wstring AskAtTerminal() {
  const HANDLE terminal = GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0;
  if (!GetConsoleMode(terminal, &mode)) return {};
  Output output(STD_ERROR_HANDLE);
  output.Write("Password of the ID file: ");
  std::array<wchar_t, kLongestPassword> typed{};
  DWORD count = 0;
  {
    const WithoutEcho echo(terminal);
    ReadConsoleW(terminal, typed.data(), static_cast<DWORD>(typed.size()), &count, nullptr);
  }
  output.Write("\n");
  std::wstring password(typed.data(), count);
  SecureZeroMemory(typed.data(), sizeof typed);
  password.resize(std::min(password.find_first_of(L"\r\n"), password.size()));
  return password;
}

}  // namespace

std::wstring TakePassword(const PasswordSources& sources,
                          const std::function<std::optional<std::string>()>& nextInputLine,
                          std::string& whyNot) {
  std::wstring password;
  whyNot = "--id-file needs a password: --password-file, LARKSPAN_PASSWORD or --password-stdin";
  if (!sources.file.empty()) {
    std::optional<std::wstring> read = ReadPasswordFile(sources.file);
    if (!read) whyNot = "the password file '" + sources.file + "' cannot be read";
    if (read && read->empty()) whyNot = "the password file '" + sources.file + "' is empty";
    if (read) password = std::move(*read);
  } else if (password = FromEnvironment(); !password.empty()) {
  } else if (sources.standardInput) {
    password = FirstLine(nextInputLine().value_or(""));
  } else {
    password = AskAtTerminal();
  }
  ForgetPasswordVariable();
  return password;
}

void ForgetPasswordVariable() { SetEnvironmentVariableW(kVariable, nullptr); }

}  // namespace larkspan::console
