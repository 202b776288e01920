#include "base/OutputPaths.h"

#include "base/WideFormat.h"

namespace larkspan::output {

std::wstring Join(std::wstring_view outputFolder, std::wstring_view relativeName) {
  return std::wstring(outputFolder).append(relativeName);
}

std::wstring NoteFile(std::wstring_view subfolder, std::uint32_t noteId) {
  return std::wstring(subfolder) + FormatWide(L"\\%08X.dxl", noteId);
}

std::wstring ViewFile(std::uint32_t viewId) {
  return kViewsFolder + FormatWide(L"\\%08X.xml", viewId);
}

}  // namespace larkspan::output
