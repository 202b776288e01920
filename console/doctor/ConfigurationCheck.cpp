// The library takes the name of its configuration as an argument in the machine's ANSI code page,
// cut after 259 bytes, and looks for the file by itself when it gets none.
#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "base/FolderFiles.h"
#include "console/doctor/ProgramChecks.h"
#include "console/folder/TextLines.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr char kNameAnother[] = "Name the notes.ini of this machine's Notes with --notes-ini.";

// Whether the argument that names it comes through whole.
bool ComesThrough(const std::string& given) {
  constexpr int kMostBytes = 259;
  const std::wstring argument = L"=" + Utf8ToWide(given);
  std::string bytes(argument.size() * 4, '\0');
  const int length =
      WideCharToMultiByte(CP_ACP, 0, argument.data(), static_cast<int>(argument.size()),
                          bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
  std::wstring back(argument.size(), L'\0');
  const int units = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, back.data(),
                                        static_cast<int>(back.size()));
  return length > 0 && length <= kMostBytes && units == static_cast<int>(argument.size()) &&
         back == argument;
}

bool IsKey(std::string_view text, std::string_view key) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
  };
  return text.size() == key.size() &&
         std::equal(text.begin(), text.end(), key.begin(),
                    [&](char one, char other) { return lower(one) == lower(other); });
}

CheckFinding JudgeFile(const std::wstring& file, const std::string& how) {
  constexpr std::array<std::string_view, 2> kKeys = {"Directory", "KeyFilename"};
  std::array<bool, kKeys.size()> isThere{};
  const FileReading reading = ReadTextLines(file, [&](const TextLine& line) {
    const std::string_view key = line.text.substr(0, line.text.find('='));
    if (key.size() == line.text.size()) return;
    for (std::size_t i = 0; i < kKeys.size(); ++i) isThere[i] |= IsKey(key, kKeys[i]);
  });
  const std::string path = WideToUtf8(file);
  if (reading == FileReading::kMissing) return Failed(path + " is not there", kNameAnother);
  if (reading != FileReading::kRead) {
    return Failed(path + " cannot be read", "Give this user the right to read it.");
  }
  std::string missing;
  for (std::size_t i = 0; i < kKeys.size(); ++i) {
    if (!isThere[i]) missing += (missing.empty() ? "" : " and ") + std::string(kKeys[i]);
  }
  if (missing.empty()) return Passed(path + how);
  return Warned(path + how + ": it does not set " + missing,
                "See that it is the notes.ini of this machine's Notes: without these the library "
                "looks for its data or its ID file elsewhere.");
}

}  // namespace

CheckFinding CheckConfiguration(const DoctorRequest& request, const ProgramFacts& facts) {
  const std::string& given = request.run.notesIni;
  if (!given.empty()) {
    const CheckFinding finding = JudgeFile(WholePath(given), "");
    if (finding.result == CheckResult::kFailed || ComesThrough(given)) return finding;
    return Failed(given +
                      " does not come through to the library: its path is longer than 258 "
                      "bytes, or not in the machine's ANSI code page",
                  "Copy the notes.ini to a short path of plain letters, and name that.");
  }
  const std::wstring folder = facts.library.substr(0, facts.library.find_last_of(L'\\') + 1);
  const std::wstring beside = folder + L"notes.ini";
  if (!folder.empty() && FileExists(beside)) return JudgeFile(beside, ", beside nnotes.dll");
  return NotTried(
      "none is named, and none lies beside nnotes.dll: the library looks for one by "
      "itself, and its start tells whether it finds one");
}

}  // namespace larkspan::console
