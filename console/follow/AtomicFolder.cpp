#include "console/follow/AtomicFolder.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <string_view>

#include "base/Pause.h"
#include "base/Utf8.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kSuffix[] = L".attempt-";
constexpr int kTries = 120;
constexpr std::chrono::milliseconds kPause{250};

// 0: the name is none of an attempt.
unsigned AttemptNumber(std::wstring_view name) {
  const std::size_t place = name.rfind(kSuffix);
  if (place == name.npos) return 0;
  const std::string digits = WideToUtf8(name.substr(place + std::size(kSuffix) - 1));
  unsigned number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() ? number : 0;
}

unsigned LastAttemptNumber(const std::wstring& out) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW((out + kSuffix + L'*').c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return 0;
  unsigned last = 0;
  do {
    last = std::max(last, AttemptNumber(found.cFileName));
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return last;
}

}  // namespace

std::wstring NextAttempt(const std::wstring& out) {
  return out + kSuffix + std::to_wstring(LastAttemptNumber(out) + 1);
}

std::optional<std::wstring> LastAttempt(const std::wstring& out) {
  const unsigned last = LastAttemptNumber(out);
  if (last == 0) return std::nullopt;
  return out + kSuffix + std::to_wstring(last);
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
