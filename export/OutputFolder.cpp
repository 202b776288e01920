// The names of stages are gathered before the first is deleted, since a folder must not change
// while it is listed.
#include "export/OutputFolder.h"

#include <string>
#include <string_view>
#include <vector>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "base/Settings.h"

namespace larkspan {

void CreateOutputSubfolders() {
  if (!ProcessSettings().archive) return;
  for (const wchar_t* subfolder : output::kSubfolders) {
    file_system::CreateFolder(InOutputFolder(subfolder));
  }
}

void DeleteLeftStages() {
  file_system::Delete(output::StageOf(InOutputFolder(output::kProperties)));
  const std::wstring views = InOutputFolder(output::kViewsFolder);
  const std::wstring ending = output::StageOf(L".xml");
  std::vector<std::wstring> stages;
  VisitFiles(views, L"*" + ending, [&](std::wstring_view name) {
    if (name.ends_with(ending)) stages.emplace_back(name);
  });
  for (const std::wstring& stage : stages) file_system::Delete(views + L"\\" + stage);
}

}  // namespace larkspan
