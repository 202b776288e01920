#include "notes/LibraryNames.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <set>
#include <string>

namespace larkspan {
namespace {

TEST(LibraryNamesTest, AreThoseOfTheDefinitionFileWithoutTheirSizes) {
  const auto names = LinkedLibraryNames();
  EXPECT_EQ(names.size(), 71u);
  EXPECT_EQ(names.front(), "NotesInitExtended");
  EXPECT_EQ(names.back(), "DNAbbreviate");
  for (const std::string_view name : names) EXPECT_EQ(name.find('@'), name.npos) << name;
}

TEST(LibraryNamesTest, StandThereOnce) {
  const auto names = LinkedLibraryNames();
  std::set<std::string_view> all(names.begin(), names.end());
  EXPECT_EQ(all.size(), names.size());
  for (const std::string_view name : kLookedUpLibraryNames) EXPECT_FALSE(all.contains(name));
}

TEST(LibraryNamesTest, AreAllInTheLibraryThatIsLoaded) {
  const HMODULE library = GetModuleHandleW(L"nnotes.dll");
  for (const std::string_view name : LinkedLibraryNames()) {
    EXPECT_NE(GetProcAddress(library, std::string(name).c_str()), nullptr) << name;
  }
  for (const std::string_view name : kLookedUpLibraryNames) {
    EXPECT_NE(GetProcAddress(library, std::string(name).c_str()), nullptr) << name;
  }
}

// What a program imports in fact stands in its own file; this one has the product's objects.
TEST(LibraryNamesTest, HoldEveryNameThatThisProgramImports) {
  const auto* const base = reinterpret_cast<const std::byte*>(GetModuleHandleW(nullptr));
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto names = LinkedLibraryNames();
  int imported = 0;
  for (auto* entry =
           reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
       entry->Name != 0; ++entry) {
    if (std::string("nnotes.dll") != reinterpret_cast<const char*>(base + entry->Name)) continue;
    for (auto* thunk = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + entry->OriginalFirstThunk);
         thunk->u1.AddressOfData != 0; ++thunk) {
      const auto* const name =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + thunk->u1.AddressOfData);
      const std::string_view text(reinterpret_cast<const char*>(name->Name));
      EXPECT_NE(std::find(names.begin(), names.end(), text), names.end()) << text;
      ++imported;
    }
  }
  EXPECT_GT(imported, 0);
}

}  // namespace
}  // namespace larkspan
