#include "console/follow/ExporterArguments.h"

#include "console/text/Utf.h"

namespace larkspan::console {

std::vector<std::wstring> ExporterArguments(const ExportRequest& request,
                                            const std::wstring& folder, bool views) {
  std::vector<std::wstring> arguments;
  const auto addText = [&arguments](const wchar_t* option, const std::string& text) {
    if (!text.empty()) arguments.insert(arguments.end(), {option, Utf8ToWide(text)});
  };
  const auto addFlag = [&arguments](const wchar_t* option, bool on) {
    if (on) arguments.emplace_back(option);
  };
  if (!request.notesIni.empty()) arguments.push_back(L"=" + Utf8ToWide(request.notesIni));
  addText(L"-s", request.server);
  addText(L"-p", request.path);
  arguments.insert(arguments.end(), {L"-o", folder});
  addText(L"-id", request.idFile);
  addFlag(L"-archive", request.archive);
  addFlag(L"-fullaccess", request.fullAccess);
  addFlag(L"-noview", !views);
  addFlag(L"-debug", request.debug);
  return arguments;
}

}  // namespace larkspan::console
