// A folder of a test's own.
#pragma once

#include <string>
#include <string_view>

namespace larkspan {

// Makes a new, empty folder in the temporary folder and removes it with all it holds at the end.
// Throws when it cannot be made.
class TempFolder {
 public:
  // With a name outside ASCII and outside every ANSI code page.
  TempFolder();

  // With a name that begins so.
  explicit TempFolder(std::wstring_view nameStart);

  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // Absolute, with backslashes, without one at the end.
  const std::wstring& path() const { return path_; }

  // The path of an entry, from a relative name that begins with a backslash.
  std::wstring operator/(std::wstring_view relativeName) const;

 private:
  std::wstring path_;
};

}  // namespace larkspan
