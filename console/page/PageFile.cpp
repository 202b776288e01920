#include "console/page/PageFile.h"

#include <windows.h>

#include <cwchar>

namespace larkspan::console {

namespace {

// The path from the root on, with backslashes alone, and none at its end.
std::wstring WholePath(const std::wstring& path) {
  const DWORD units = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring whole(units, L'\0');
  whole.resize(GetFullPathNameW(path.c_str(), units, whole.data(), nullptr));
  while (whole.ends_with(L'\\')) whole.pop_back();
  return whole;
}

}  // namespace

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
