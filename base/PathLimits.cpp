#include "base/PathLimits.h"

#include <windows.h>

#include "base/OutputPaths.h"

namespace larkspan {

namespace {

// The system takes such a path as it stands, and of any length that it can count.
bool IsVerbatim(const std::wstring& path) { return path.starts_with(L"\\\\?\\"); }

}  // namespace

bool AreLongPathsEnabled() {
  using Function = BOOLEAN(WINAPI*)();
  const auto areEnabled = reinterpret_cast<Function>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlAreLongPathsEnabled")));
  return areEnabled != nullptr && areEnabled() != FALSE;
}

// The name of a view that is not complete yet, or that of a note.
std::size_t LongestOutputName(bool archive) {
  return (archive ? output::StageOf(output::ViewFile(0)) : output::NoteFile({}, 0)).size();
}

bool IsWithinPathLimit(const std::wstring& folder, bool archive) {
  constexpr std::size_t kMaxVerbatim = 32767;  // With its NUL.
  const std::size_t longest = LongestOutputName(archive);
  if (IsVerbatim(folder)) return folder.size() + longest + 1 <= kMaxVerbatim;
  const DWORD length = GetFullPathNameW(folder.c_str(), 0, nullptr, nullptr);  // With its NUL.
  return length + longest <= MAX_PATH || AreLongPathsEnabled();
}

}  // namespace larkspan
