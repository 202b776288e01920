// The names that the library and its two flavours export.
#include <fstream>
#include <string>

#include "standin/EntryNames.h"
#include "tests/standin/StandinTest.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace larkspan::standin_test {

namespace {

// A library loaded for its names only; it stays loaded.
class Library {
 public:
#ifdef _WIN32
  explicit Library(const std::filesystem::path& folder)
      : handle_(LoadLibraryW((folder / "nnotes.dll").make_preferred().c_str())) {}
  bool Has(const std::string& name) const {
    return GetProcAddress(handle_, name.c_str()) != nullptr;
  }

 private:
  HMODULE handle_;
#else
  explicit Library(const std::filesystem::path& folder)
      : handle_(dlopen((folder / "libnnotes.so").c_str(), RTLD_NOW | RTLD_LOCAL)) {}
  bool Has(const std::string& name) const { return dlsym(handle_, name.c_str()) != nullptr; }

 private:
  void* handle_;
#endif

 public:
  bool isLoaded() const { return handle_ != nullptr; }
};

// The names of the import library of programs.
std::vector<std::string> ImportedNames() {
  std::ifstream in(LARKSPAN_EXPORTS);
  std::vector<std::string> names;
  for (std::string line; std::getline(in, line);) {
    const std::size_t sign = line.find('@');
    if (sign != std::string::npos) names.push_back(line.substr(0, sign));
  }
  return names;
}

void ExpectEntries(const std::string& folder, const std::string& lacking) {
  const Library library(std::filesystem::path(LARKSPAN_LIBRARIES) / folder);
  ASSERT_TRUE(library.isLoaded());
  for (const std::string_view entry : standin::kEntryNames) {
    const std::string name(entry);
    EXPECT_EQ(library.Has(name), name != lacking) << name;
  }
}

}  // namespace

TEST(Exports, HoldEveryNameThatProgramsImport) {
  const std::vector<std::string> names = ImportedNames();
  EXPECT_EQ(names.size() + 2, std::size(standin::kEntryNames));
  for (const std::string& name : names) EXPECT_TRUE(standin::IsEntryName(name)) << name;
}

TEST(Exports, OfTheLibraryAreComplete) { ExpectEntries("", ""); }

TEST(Exports, OfTheBareLibraryLackTheSearch) { ExpectEntries("bare", "NSFSearchExtended3"); }

TEST(Exports, OfTheOtherFlavourLackThePurge) { ExpectEntries("nopurge", "NIFPurgeCollection"); }

}  // namespace larkspan::standin_test
