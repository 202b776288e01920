#include "console/batch/SafeName.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <vector>

#include "console/bag/Digests.h"
#include "console/follow/AtomicFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr std::wstring_view kRefusedCharacters = L"<>:\"/\\|?*";

// So that the longest path of a file stays below the 260 that Windows takes by itself, with a root
// that is not long: an export's own names take 60, and the number of an attempt 12.
constexpr std::size_t kLongestName = 140;
constexpr std::size_t kLongestPart = 100;

constexpr std::size_t kSumDigits = 8;

bool IsRefusedCharacter(wchar_t unit) {
  return unit < L' ' || unit == 0x7F || kRefusedCharacters.find(unit) != std::wstring_view::npos;
}

// "CON" and "con .txt" open a device.
bool IsDevice(std::wstring_view name) {
  constexpr std::array<std::wstring_view, 6> kDevices = {L"CON", L"PRN",    L"AUX",
                                                         L"NUL", L"CONIN$", L"CONOUT$"};
  constexpr std::wstring_view kDigits = L"0123456789\u00B9\u00B2\u00B3";
  std::wstring_view stem = name.substr(0, name.find(L'.'));
  stem = stem.substr(0, stem.find_last_not_of(L' ') + 1);
  if (std::any_of(kDevices.begin(), kDevices.end(),
                  [&](std::wstring_view device) { return IsSameName(stem, device); }))
    return true;
  return stem.size() == 4 && kDigits.find(stem[3]) != std::wstring_view::npos &&
         (IsSameName(stem.substr(0, 3), L"COM") || IsSameName(stem.substr(0, 3), L"LPT"));
}

// Not between the two halves of a character.
std::wstring Cut(std::wstring name, std::size_t length) {
  if (name.size() <= length) return name;
  if (IS_HIGH_SURROGATE(name[length - 1])) --length;
  name.resize(length);
  return name;
}

std::vector<std::wstring> PartsOf(const std::string& path) {
  std::vector<std::wstring> parts(1);
  for (const wchar_t unit : Utf8ToWide(path)) {
    if (unit != L'\\' && unit != L'/') {
      parts.back().push_back(unit);
    } else if (!parts.back().empty()) {
      parts.emplace_back();
    }
  }
  if (parts.size() > 1 && parts.back().empty()) parts.pop_back();
  std::transform(parts.begin(), parts.end(), parts.begin(), SafePart);
  return parts;
}

std::wstring ServerPart(const ListedDatabase& database) {
  return database.server.empty() ? L"local" : SafePart(Utf8ToWide(database.server));
}

bool IsAttempt(std::wstring_view part) {
  const std::size_t begin = part.rfind(L'.');
  return begin != std::wstring_view::npos &&
         IsSameName(part.substr(begin, kAttemptSuffix.size()), kAttemptSuffix);
}

}  // namespace

std::wstring SafePart(std::wstring_view part) {
  std::wstring name(part);
  std::replace_if(name.begin(), name.end(), IsRefusedCharacter, L'_');
  name = Cut(name, kLongestPart);
  for (std::size_t at = name.size(); at > 0 && (name[at - 1] == L'.' || name[at - 1] == L' '); --at)
    name[at - 1] = L'_';
  if (name.empty() || IsDevice(name)) name.insert(name.begin(), L'_');
  return name;
}

std::wstring FolderNameOf(const ListedDatabase& database) {
  std::wstring name = ServerPart(database);
  for (const std::wstring& part : PartsOf(database.path)) name += L"\\" + part;
  return name;
}

std::wstring FolderNameWithSum(const ListedDatabase& database) {
  std::wstring flat;
  for (const std::wstring& part : PartsOf(database.path))
    flat += (flat.empty() ? L"" : L"_") + part;
  const std::string sum =
      DigestOfText(DigestKind::kSha256,
                   WideToUtf8(UpperCase(Utf8ToWide(database.server))) + "!!" + database.path);
  return SafePart(Cut(ServerPart(database), kLongestPart / 2)) + L"\\" +
         Cut(flat, kLongestPart / 2) + L"~" + Utf8ToWide(sum.substr(0, kSumDigits));
}

bool IsRefused(std::wstring_view folderName) {
  if (folderName.size() > kLongestName) return true;
  for (std::size_t begin = 0; begin != std::wstring::npos;) {
    const std::size_t end = folderName.find(L'\\', begin);
    if (IsAttempt(folderName.substr(begin, end - begin))) return true;
    begin = end == std::wstring::npos ? end : end + 1;
  }
  return false;
}

}  // namespace larkspan::console
