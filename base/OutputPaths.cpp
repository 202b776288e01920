#include "base/OutputPaths.h"

#include "base/WideFormat.h"

namespace larkspan::output {

std::wstring Join(std::wstring_view outputFolder, std::wstring_view relativeName) {
  std::wstring path;
  path.reserve(outputFolder.size() + relativeName.size());
  return path.append(outputFolder).append(relativeName);
}

std::wstring StageOf(std::wstring_view path) { return Join(path, kStageSuffix); }

std::wstring NoteFile(std::wstring_view subfolder, std::uint32_t noteId) {
  return FormatWide(L"%.*s\\%08X.dxl", static_cast<int>(subfolder.size()), subfolder.data(),
                    noteId);
}

std::wstring ViewFile(std::uint32_t viewId) {
  return FormatWide(L"%s\\%08X.xml", kViewsFolder, viewId);
}

}  // namespace larkspan::output
