#include "tests/fuzz/ParsedLineCheck.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string_view>

#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

std::wstring LowerCase(std::wstring text) {
  for (wchar_t& letter : text) {
    if (letter >= L'A' && letter <= L'Z') letter = static_cast<wchar_t>(letter - L'A' + L'a');
  }
  return text;
}

bool IsForRuntime(const std::wstring& argument) { return argument.starts_with(L'='); }

// What the arguments behind the program say, by the words of the options.
struct Wanted {
  bool isAccepted = true;
  std::set<std::wstring> flags;
  std::map<std::wstring, std::wstring> values;
};

Wanted WantedBy(const std::vector<std::wstring>& arguments) {
  static const std::set<std::wstring> kFlags = {L"-archive", L"-scan", L"-fullaccess",
                                                L"-servers", L"-v",    L"-version",
                                                L"-noview",  L"-debug"};
  static const std::set<std::wstring> kValues = {L"-s",    L"-p",  L"-o",       L"-l",
                                                 L"-pipe", L"-id", L"-password"};
  Wanted wanted;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::wstring word = LowerCase(arguments[i]);
    if (IsForRuntime(word)) continue;
    if (kFlags.contains(word)) {
      wanted.flags.insert(word);
    } else if (kValues.contains(word) && i + 1 < arguments.size()) {
      wanted.values[word] = arguments[++i];
    } else {
      wanted.isAccepted = false;
      return wanted;
    }
  }
  return wanted;
}

void CheckTexts(const Settings& settings, Wanted wanted) {
  Require(settings.server == wanted.values[L"-s"], "the server is its value");
  Require(settings.databasePath == wanted.values[L"-p"], "the database is its value");
  Require(settings.outputFolder == wanted.values[L"-o"], "the output folder is its value");
  Require(settings.idFile == wanted.values[L"-id"], "the ID file is its value");
  Require(settings.idPassword == wanted.values[L"-password"], "the password is its value");
}

void CheckFlags(const ParsedCommandLine& line, const Wanted& wanted) {
  const auto has = [&](const wchar_t* word) { return wanted.flags.contains(word); };
  const Settings& settings = line.settings;
  Require(line.showVersion == (has(L"-v") || has(L"-version")), "the version is asked for");
  Require(settings.archive == has(L"-archive"), "-archive is a flag");
  Require(settings.scan == has(L"-scan"), "-scan is a flag");
  Require(settings.fullAccess == has(L"-fullaccess"), "-fullaccess is a flag");
  Require(settings.servers == has(L"-servers"), "-servers is a flag");
  Require(settings.noViews == has(L"-noview"), "-noview is a flag");
  Require(settings.minimumLogLevel == (has(L"-debug") ? 0 : 1), "-debug is a flag");
}

// The number of a text that is nothing but digits, and not too many for any runtime.
std::optional<std::int64_t> PlainNumber(const std::wstring& text, std::size_t base) {
  constexpr std::wstring_view kDigits = L"0123456789abcdef";
  constexpr std::size_t kMaxDigits = 8;
  if (text.empty() || text.size() > kMaxDigits) return std::nullopt;
  std::int64_t number = 0;
  for (const wchar_t letter : LowerCase(text)) {
    const std::size_t digit = kDigits.substr(0, base).find(letter);
    if (digit == std::wstring_view::npos) return std::nullopt;
    number = number * static_cast<std::int64_t>(base) + static_cast<std::int64_t>(digit);
  }
  return number;
}

// Nothing is said of a value in any other form, but for one that is missing.
void CheckNumber(const Wanted& wanted, const wchar_t* word, std::size_t base, std::int64_t number,
                 std::int64_t withoutValue) {
  const auto value = wanted.values.find(word);
  const std::optional<std::int64_t> wantedNumber =
      value == wanted.values.end() ? withoutValue : PlainNumber(value->second, base);
  Require(!wantedNumber || number == *wantedNumber, "a number is its value, or that of no value");
}

void CheckNumbers(const Settings& settings, const Wanted& wanted) {
  CheckNumber(wanted, L"-l", 16, settings.resumeNoteId, kNoNoteId);
  CheckNumber(wanted, L"-pipe", 10, settings.progressPipe, kNoPipe);
}

}  // namespace

void CheckParsedLine(const ParsedCommandLine& line, const std::vector<std::wstring>& arguments) {
  const Wanted wanted = WantedBy(arguments);
  Require(line.accepted == wanted.isAccepted, "a line of known words is accepted");
  Require(line.settings.programPath == (arguments.empty() ? L"" : arguments[0]),
          "the first argument is the program");
  if (!line.accepted) return;
  Require(line.fault.empty(), "what is accepted has no fault");
  CheckTexts(line.settings, wanted);
  CheckFlags(line, wanted);
  CheckNumbers(line.settings, wanted);
}

}  // namespace larkspan::fuzz
