#include "console/folder/WholeFile.h"

#include <utility>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"

namespace larkspan::console {

namespace {

bool WriteAll(const std::wstring& path, std::string_view bytes) {
  file_system::UniqueFile file = file_system::Open(path, L"wb");
  if (!file) return false;
  const bool taken = file_system::Write(file.get(), bytes) == bytes.size();
  return file_system::Close(std::move(file)) && taken;
}

}  // namespace

bool WriteWholeFile(const std::wstring& file, std::string_view bytes) {
  const std::wstring stage = output::StageOf(file);
  if (WriteAll(stage, bytes) && file_system::Move(stage, file, file_system::Earlier::kIsReplaced))
    return true;
  file_system::Delete(stage);
  return false;
}

}  // namespace larkspan::console
