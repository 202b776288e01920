// A folder of this program's own below the user's folder for temporary files.
#pragma once

#include <string>

namespace larkspan::console {

class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();  // The folder is gone, with all that it holds and nobody keeps open.
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Without a backslash at its end; empty when the folder could not be made.
  const std::wstring& path() const { return path_; }

 private:
  std::wstring path_;
};

}  // namespace larkspan::console
