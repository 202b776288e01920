#include "tests/torture/kill/FinalFiles.h"

#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "tests/support/FileBytes.h"

namespace larkspan::torture {

namespace {

// A file that was moved this moment may still be held by whoever moved it.
std::string ReadWhenReleased(const std::wstring& path) {
  constexpr DWORD kPauseMilliseconds = 5;
  for (int left = 200; left > 0; --left) {
    try {
      return ReadBytes(path);
    } catch (const std::runtime_error&) {
      Sleep(kPauseMilliseconds);
    }
  }
  return ReadBytes(path);
}

}  // namespace

OutputTree ReadFinalFiles(const std::wstring& output) {
  OutputTree tree;
  for (const char* folder : {"", "data/", "design/", "design2/", "profile/", "views/"}) {
    std::error_code missing;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(output) / folder, missing)) {
      const std::string name = folder + entry.path().filename().string();
      if (IsFinalName(name)) tree[name] = ReadWhenReleased(entry.path().wstring());
    }
  }
  return tree;
}

}  // namespace larkspan::torture
