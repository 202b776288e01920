// Faults end the parsing at once, and what was parsed by then is not used. Arguments for the Notes
// runtime are gathered before, since they count wherever they stand.
#include "app/CommandLine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <string_view>

#include "base/WideFormat.h"

namespace larkspan {

namespace {

using Apply = void (*)(ParsedCommandLine&, const std::wstring& value);

struct Option {
  const wchar_t* word;
  bool takesValue;
  Apply apply;
};

void Stop(ParsedCommandLine& line, const std::wstring&) { line.accepted = false; }

void ShowVersion(ParsedCommandLine& line, const std::wstring&) { line.showVersion = true; }

// A value that is no number leaves the setting as it was.
void SetResumeNoteId(ParsedCommandLine& line, const std::wstring& value) {
  unsigned int noteId = 0;
  if (std::swscanf(value.c_str(), L"%X", &noteId) == 1) line.settings.resumeNoteId = noteId;
}

void SetProgressPipe(ParsedCommandLine& line, const std::wstring& value) {
  long long handle = 0;
  if (std::swscanf(value.c_str(), L"%lld", &handle) == 1) line.settings.progressPipe = handle;
}

template <auto Member>
void SetText(ParsedCommandLine& line, const std::wstring& value) {
  line.settings.*Member = value;
}

void SetPassword(ParsedCommandLine& line, const std::wstring& value) {
  line.settings.idPassword = value;
  line.hasPassword = true;
}

template <auto Member>
void SetFlag(ParsedCommandLine& line, const std::wstring&) {
  line.settings.*Member = true;
}

constexpr std::array kOptions = {
    Option{L"-s", true, SetText<&Settings::server>},
    Option{L"-p", true, SetText<&Settings::databasePath>},
    Option{L"-o", true, SetText<&Settings::outputFolder>},
    Option{L"-l", true, SetResumeNoteId},
    Option{L"-h", false, Stop},
    Option{L"-?", false, Stop},
    Option{L"-pipe", true, SetProgressPipe},
    Option{L"-archive", false, SetFlag<&Settings::archive>},
    Option{L"-scan", false, SetFlag<&Settings::scan>},
    Option{L"-fullaccess", false, SetFlag<&Settings::fullAccess>},
    Option{L"-servers", false, SetFlag<&Settings::servers>},
    Option{L"-id", true, SetText<&Settings::idFile>},
    Option{L"-password", true, SetPassword},
    Option{L"-v", false, ShowVersion},
    Option{L"-version", false, ShowVersion},
    Option{L"-noview", false, SetFlag<&Settings::noViews>},
    Option{L"-debug", false,
           [](ParsedCommandLine& line, const std::wstring&) { line.settings.minimumLogLevel = 0; }},
};

wchar_t LowerCase(wchar_t letter) {
  return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

bool IsSameWord(std::wstring_view word, std::wstring_view argument) {
  return std::equal(
      word.begin(), word.end(), argument.begin(), argument.end(),
      [](wchar_t left, wchar_t right) { return LowerCase(left) == LowerCase(right); });
}

const Option* FindOption(const std::wstring& argument) {
  for (const Option& option : kOptions) {
    if (IsSameWord(option.word, argument)) return &option;
  }
  return nullptr;
}

bool IsRuntimeArgument(const std::wstring& argument) {
  return !argument.empty() && argument.front() == L'=';
}

std::string InvalidParameterText(const std::wstring& argument) {
  return FormatNarrow("Invalid parameter '%.20S'", argument.c_str());
}

// An argument that begins with "=" is meant for the runtime start wherever it stands, also as the
// value of an option.
void KeepProgramAndRuntimeArguments(const std::vector<std::wstring>& arguments,
                                    Settings& settings) {
  if (!arguments.empty()) settings.programPath = arguments.front();
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    if (IsRuntimeArgument(arguments[i])) settings.runtimeArguments.push_back(arguments[i]);
  }
}

}  // namespace

ParsedCommandLine ParseCommandLine(const std::vector<std::wstring>& arguments) {
  ParsedCommandLine line;
  KeepProgramAndRuntimeArguments(arguments, line.settings);
  for (std::size_t i = 1; i < arguments.size() && line.accepted; ++i) {
    const std::wstring& argument = arguments[i];
    if (IsRuntimeArgument(argument)) continue;
    const Option* option = FindOption(argument);
    const bool valueMissing = option != nullptr && option->takesValue && i + 1 == arguments.size();
    if (option == nullptr || valueMissing) {
      line.accepted = false;
      line.fault = InvalidParameterText(argument);
    } else {
      option->apply(line, option->takesValue ? arguments[++i] : std::wstring());
    }
  }
  return line;
}

}  // namespace larkspan
