// Each file of an export, read in full.
#include <algorithm>
#include <memory>

#include "console/account/ExportFiles.h"
#include "console/folder/FileCrew.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::wstring PathOf(const std::wstring& folder, const ExportFile& file) {
  std::wstring name = Utf8ToWide(file.Name());
  std::replace(name.begin(), name.end(), L'/', L'\\');
  return folder + L"\\" + name;
}

}  // namespace

bool ReadExportFiles(const std::wstring& folder, const FileProgress& progress,
                     std::vector<ExportFile>& files) {
  return WorkOnFiles(files.size(), progress, [&] {
    return [&, reader = std::make_shared<DxlReader>()](std::size_t i) {
      files[i].facts = reader->Read(PathOf(folder, files[i]));
    };
  });
}

}  // namespace larkspan::console
