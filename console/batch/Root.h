// The folder below which a batch makes those of its exports.
#pragma once

#include <string>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

// Makes the folder, and those above it. Empty, or the end of a sentence that says why it cannot be
// the root of a batch.
std::string MakeRoot(const std::wstring& root);

// Held by the one batch that may work below a root, by whatever name and from whatever machine: a
// file that nobody else can open, and that is gone with its process.
class RootLock {
 public:
  explicit RootLock(const std::wstring& root);

  // False: another one is at work there, or no file can be made.
  bool IsHeld() const { return static_cast<bool>(file_); }

 private:
  SystemHandle file_;
};

}  // namespace larkspan::console
