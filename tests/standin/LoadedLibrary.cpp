#include "tests/standin/LoadedLibrary.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace larkspan::standin_test {

#ifdef _WIN32

std::string LoadedLibrary::FileName() { return "nnotes.dll"; }

LoadedLibrary::LoadedLibrary(const std::filesystem::path& folder)
    : handle_(LoadLibraryW((folder / FileName()).make_preferred().c_str())) {}

LoadedLibrary::~LoadedLibrary() {
  if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

void* LoadedLibrary::Address(const std::string& name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name.c_str()));
}

#else

std::string LoadedLibrary::FileName() { return "libnnotes.so"; }

LoadedLibrary::LoadedLibrary(const std::filesystem::path& folder)
    : handle_(dlopen((folder / FileName()).c_str(), RTLD_NOW | RTLD_LOCAL)) {}

LoadedLibrary::~LoadedLibrary() {
  if (handle_ != nullptr) dlclose(handle_);
}

void* LoadedLibrary::Address(const std::string& name) const { return dlsym(handle_, name.c_str()); }

#endif

}  // namespace larkspan::standin_test
