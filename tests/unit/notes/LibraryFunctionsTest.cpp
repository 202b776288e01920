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
  EXPECT_EQ(FindLibraryFunctions(L"nnotes.dll"), LibraryLookup::kFound);
  EXPECT_EQ(reinterpret_cast<void*>(FoundLibraryFunctions().searchExtended3),
            AddressIn(L"nnotes.dll", "NSFSearchExtended3"));
  EXPECT_EQ(reinterpret_cast<void*>(FoundLibraryFunctions().purgeCollection),
            AddressIn(L"nnotes.dll", "NIFPurgeCollection"));
}

TEST(LibraryFunctionsTest, LibraryThatIsNotLoadedIsTold) {
  EXPECT_EQ(FindLibraryFunctions(L"larkspan-missing.dll"), LibraryLookup::kNoLibrary);
}

TEST(LibraryFunctionsTest, SearchIsLookedUpFirst) {
  EXPECT_EQ(FindLibraryFunctions(L"kernel32.dll"), LibraryLookup::kNoSearchExtended3);
}

TEST(LibraryFunctionsTest, LibraryWithoutSearchIsTold) {
  const LoadedLibrary bare(L"bare");
  EXPECT_EQ(FindLibraryFunctions(bare.path().c_str()), LibraryLookup::kNoSearchExtended3);
}

TEST(LibraryFunctionsTest, LibraryWithoutPurgeIsTold) {
  const LoadedLibrary withoutPurge(L"nopurge");
  EXPECT_EQ(FindLibraryFunctions(withoutPurge.path().c_str()), LibraryLookup::kNoPurgeCollection);
}

}  // namespace
}  // namespace larkspan
