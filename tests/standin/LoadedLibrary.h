// A library loaded at run time, for tests of what a library file exports and where it looks.
// Unloaded when the object goes.
#pragma once

#include <filesystem>
#include <string>

namespace larkspan::standin_test {

class LoadedLibrary {
 public:
  // The library in that folder, under the name that the system gives to it.
  explicit LoadedLibrary(const std::filesystem::path& folder);
  ~LoadedLibrary();
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  static std::string FileName();

  bool isLoaded() const { return handle_ != nullptr; }

  // Null when the library lacks the name.
  void* Address(const std::string& name) const;

 private:
  void* handle_;
};

}  // namespace larkspan::standin_test
