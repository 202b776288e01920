#include "app/VersionBox.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace larkspan {

namespace {

constexpr WORD kVersionResourceId = 1;

// A copy, since the query operation wants memory that it may write to.
std::vector<std::byte> CopyVersionResource(HMODULE module) {
  const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(kVersionResourceId),
                                    MAKEINTRESOURCEW(16));  // The version type.
  if (found == nullptr) return {};
  const HGLOBAL loaded = LoadResource(module, found);
  const void* bytes = loaded == nullptr ? nullptr : LockResource(loaded);
  if (bytes == nullptr) return {};
  std::vector<std::byte> copy(SizeofResource(module, found));
  std::memcpy(copy.data(), bytes, copy.size());
  return copy;
}

}  // namespace

std::optional<std::wstring> ProductVersion(HMODULE module) {
  std::vector<std::byte> resource = CopyVersionResource(module);
  if (resource.empty()) return std::nullopt;
  void* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(resource.data(), L"\\StringFileInfo\\040904B0\\ProductVersion", &text,
                      &length)) {
    return std::nullopt;
  }
  return static_cast<const wchar_t*>(text);
}

void ShowVersionBox() {
  const std::optional<std::wstring> version = ProductVersion(nullptr);
  if (version) MessageBoxW(nullptr, version->c_str(), L"Larkspan", MB_OK);
}

}  // namespace larkspan
