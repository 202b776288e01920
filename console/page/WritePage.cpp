#include "console/page/WritePage.h"

#include <windows.h>

#include <cwchar>
#include <utility>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"

namespace larkspan::console {

namespace {

bool WriteWhole(const std::wstring& path, std::string_view bytes) {
  file_system::UniqueFile file = file_system::Open(path, L"wb");
  if (!file) return false;
  const bool taken = file_system::Write(file.get(), bytes) == bytes.size();
  return file_system::Close(std::move(file)) && taken;
}

// The path from the root on, with backslashes alone, and none at its end.
std::wstring WholePath(const std::wstring& path) {
  const DWORD units = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring whole(units, L'\0');
  whole.resize(GetFullPathNameW(path.c_str(), units, whole.data(), nullptr));
  while (whole.ends_with(L'\\')) whole.pop_back();
  return whole;
}

}  // namespace

bool WritePage(const std::wstring& file, std::string_view page) {
  const std::wstring stage = output::StageOf(file);
  if (WriteWhole(stage, page) && file_system::Move(stage, file, file_system::Earlier::kIsReplaced))
    return true;
  file_system::Delete(stage);
  return false;
}

bool IsNamedAsPage(const std::wstring& file) {
  const std::size_t dot = file.find_last_of(L"./\\");
  return dot != std::wstring::npos && (_wcsicmp(file.c_str() + dot, L".html") == 0 ||
                                       _wcsicmp(file.c_str() + dot, L".htm") == 0);
}

bool LiesInside(const std::wstring& file, const std::wstring& folder) {
  const std::wstring outer = WholePath(folder) + L"\\";
  const std::wstring inner = WholePath(file);
  const auto units = static_cast<int>(outer.size());
  return inner.size() > outer.size() &&
         CompareStringOrdinal(inner.c_str(), units, outer.c_str(), units, TRUE) == CSTR_EQUAL;
}

}  // namespace larkspan::console
