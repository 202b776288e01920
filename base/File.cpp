#include "base/File.h"

#include <utility>

namespace larkspan {

UniqueFile OpenFile(const std::wstring& path, const wchar_t* mode) {
  return UniqueFile(_wfopen(path.c_str(), mode));
}

bool CloseFile(UniqueFile file) {
  const bool written = std::ferror(file.get()) == 0;
  return std::fclose(file.release()) == 0 && written;
}

bool AppendToTextFile(const std::wstring& path, std::string_view text) {
  UniqueFile file = OpenFile(path, L"a");
  if (!file) return false;
  std::fwrite(text.data(), 1, text.size(), file.get());
  return CloseFile(std::move(file));
}

}  // namespace larkspan
