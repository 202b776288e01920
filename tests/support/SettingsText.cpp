#include "tests/support/SettingsText.h"

#include <iomanip>
#include <sstream>

namespace larkspan {

namespace {

std::wstring EightHexDigits(std::uint32_t number) {
  std::wostringstream text;
  text << std::hex << std::uppercase << std::setw(8) << std::setfill(L'0') << number;
  return text.str();
}

class Changes {
 public:
  void Text(const wchar_t* name, const std::wstring& value) {
    if (!value.empty()) changes_.push_back(std::wstring(name) + L"=" + value);
  }
  void Flag(const wchar_t* name, bool value) {
    if (value) changes_.push_back(name);
  }
  std::vector<std::wstring> Take() { return std::move(changes_); }

 private:
  std::vector<std::wstring> changes_;
};

std::wstring TextUnless(bool isDefault, std::wstring text) {
  return isDefault ? std::wstring() : std::move(text);
}

}  // namespace

std::vector<std::wstring> ChangedSettings(const Settings& settings) {
  constexpr std::uint32_t kNoResume = 0xFFFFFFFF;
  Changes changes;
  changes.Text(L"server", settings.server);
  changes.Text(L"databasePath", settings.databasePath);
  changes.Text(L"outputFolder", settings.outputFolder);
  changes.Text(L"resumeNoteId", TextUnless(settings.resumeNoteId == kNoResume,
                                           EightHexDigits(settings.resumeNoteId)));
  changes.Text(L"progressPipe",
               TextUnless(settings.progressPipe == -1, std::to_wstring(settings.progressPipe)));
  changes.Flag(L"archive", settings.archive);
  changes.Flag(L"scan", settings.scan);
  changes.Flag(L"fullAccess", settings.fullAccess);
  changes.Flag(L"servers", settings.servers);
  changes.Text(L"idFile", settings.idFile);
  changes.Text(L"idPassword", settings.idPassword);
  changes.Flag(L"noViews", settings.noViews);
  changes.Text(L"minimumLogLevel", TextUnless(settings.minimumLogLevel == 1,
                                              std::to_wstring(settings.minimumLogLevel)));
  for (const std::wstring& argument : settings.runtimeArguments) changes.Text(L"runtime", argument);
  return changes.Take();
}

}  // namespace larkspan
