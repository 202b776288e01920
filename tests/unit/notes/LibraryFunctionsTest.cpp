#include "notes/LibraryFunctions.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/support/Program.h"

namespace larkspan {
namespace {

// A flavour of the stand-in library, loaded from a folder beside the test program.
class LoadedLibrary {
 public:
  explicit LoadedLibrary(const std::wstring& folder)
      : path_(testing::ProgramFolder() + L"\\" + folder + L"\\nnotes.dll"),
        library_(LoadLibraryW(path_.c_str())) {
    EXPECT_NE(library_, nullptr);
  }
  ~LoadedLibrary() { FreeLibrary(library_); }
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;

  const std::wstring& path() const { return path_; }

 private:
  std::wstring path_;
  HMODULE library_;
};

void* AddressIn(const wchar_t* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name));
}

TEST(LibraryFunctionsTest, BothFunctionsAreFound) {
  LibraryFunctions functions;
  EXPECT_EQ(FindLibraryFunctions(L"nnotes.dll", functions), LibraryLookup::kFound);
  EXPECT_EQ(reinterpret_cast<void*>(functions.searchExtended3),
            AddressIn(L"nnotes.dll", "NSFSearchExtended3"));
  EXPECT_EQ(reinterpret_cast<void*>(functions.purgeCollection),
            AddressIn(L"nnotes.dll", "NIFPurgeCollection"));
}

TEST(LibraryFunctionsTest, LibraryThatIsNotLoadedIsTold) {
  LibraryFunctions functions;
  EXPECT_EQ(FindLibraryFunctions(L"larkspan-missing.dll", functions), LibraryLookup::kNoLibrary);
}

TEST(LibraryFunctionsTest, SearchIsLookedUpFirst) {
  LibraryFunctions functions;
  EXPECT_EQ(FindLibraryFunctions(L"kernel32.dll", functions), LibraryLookup::kNoSearchExtended3);
}

TEST(LibraryFunctionsTest, LibraryWithoutSearchIsTold) {
  const LoadedLibrary bare(L"bare");
  LibraryFunctions functions;
  EXPECT_EQ(FindLibraryFunctions(bare.path().c_str(), functions),
            LibraryLookup::kNoSearchExtended3);
}

TEST(LibraryFunctionsTest, LibraryWithoutPurgeIsTold) {
  const LoadedLibrary withoutPurge(L"nopurge");
  LibraryFunctions functions;
  EXPECT_EQ(FindLibraryFunctions(withoutPurge.path().c_str(), functions),
            LibraryLookup::kNoPurgeCollection);
}

}  // namespace
}  // namespace larkspan
