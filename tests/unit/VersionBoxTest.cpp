#include "app/VersionBox.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

namespace larkspan {
namespace {

struct ModuleCloser {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using UniqueModule = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleCloser>;

// Loads a program that was built beside this one, for its resources alone.
UniqueModule LoadNeighbour(const std::wstring& name) {
  std::array<wchar_t, 1024> own{};
  GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size()));
  const std::wstring path(own.data());
  const std::wstring neighbour = path.substr(0, path.rfind(L'\\') + 1) + name;
  return UniqueModule(LoadLibraryExW(neighbour.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
}

TEST(VersionBoxTest, ProgramCarriesItsVersion) {
  const UniqueModule program = LoadNeighbour(L"larkspan.exe");
  ASSERT_TRUE(program);
  EXPECT_EQ(ProductVersion(program.get()), std::optional<std::wstring>(LARKSPAN_EXPECTED_VERSION));
}

TEST(VersionBoxTest, ModuleWithoutVersionResourceHasNoVersion) {
  EXPECT_EQ(ProductVersion(GetModuleHandleW(nullptr)), std::nullopt);
}

TEST(VersionBoxTest, NullModuleIsTheProgramItself) {
  EXPECT_EQ(ProductVersion(nullptr), std::nullopt);
}

TEST(VersionBoxTest, VersionOfAnotherLanguageIsNoVersion) {
  const UniqueModule other = LoadNeighbour(L"other_language.dll");
  ASSERT_TRUE(other);
  EXPECT_EQ(ProductVersion(other.get()), std::nullopt);
}

TEST(ManifestTest, ProgramRunsAsItsCallerAndTakesLongPaths) {
  const UniqueModule program = LoadNeighbour(L"larkspan.exe");
  ASSERT_TRUE(program);
  const HRSRC found = FindResourceW(program.get(), MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24));
  ASSERT_NE(found, nullptr);
  const std::string manifest(
      static_cast<const char*>(LockResource(LoadResource(program.get(), found))),
      SizeofResource(program.get(), found));
  EXPECT_NE(manifest.find("level=\"asInvoker\""), std::string::npos);
  EXPECT_NE(manifest.find(">true</longPathAware>"), std::string::npos);
  EXPECT_EQ(manifest.find("activeCodePage"), std::string::npos);
}

}  // namespace
}  // namespace larkspan
