#include "console/follow/AtomicFolder.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <string_view>

#include "base/Pause.h"
#include "base/Utf8.h"

namespace larkspan::console {

namespace {

constexpr int kTries = 120;
constexpr std::chrono::milliseconds kPause{250};

// What stands behind the suffix; 0: no number, or not as this program writes it.
unsigned AttemptNumber(std::wstring_view text) {
  const std::string digits = WideToUtf8(text);
  unsigned number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return std::to_string(number) == digits ? number : 0;
}

std::wstring Beginning(std::wstring out) { return out.append(kAttemptSuffix); }

unsigned LastAttemptNumber(const std::wstring& out) {
  const std::wstring beginning = Beginning(out);
  const std::size_t length = beginning.size() - (beginning.find_last_of(L'\\') + 1);
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW((beginning + L'*').c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  unsigned last = 0;
  do {
    const std::wstring_view name = found.cFileName;
    last = std::max(last, AttemptNumber(name.substr(std::min(length, name.size()))));
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return last;
}

}  // namespace

std::wstring NextAttempt(const std::wstring& out) {
  return Beginning(out) + std::to_wstring(LastAttemptNumber(out) + 1);
}

std::optional<std::wstring> LastAttempt(const std::wstring& out) {
  const unsigned last = LastAttemptNumber(out);
  if (last == 0) return std::nullopt;
  return Beginning(out) + std::to_wstring(last);
}

bool PlaceAttempt(const std::wstring& attempt, const std::wstring& out,
                  const std::function<bool()>& giveUp) {
  for (int tries = 0; tries < kTries && !giveUp(); ++tries) {
    RemoveDirectoryW(out.c_str());  // Refused when it holds anything.
    if (MoveFileExW(attempt.c_str(), out.c_str(), 0)) return true;
    Pause(kPause);
  }
  return false;
}

}  // namespace larkspan::console
