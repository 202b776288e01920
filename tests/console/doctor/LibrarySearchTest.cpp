#include "console/doctor/LibrarySearch.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

constexpr int kBits = sizeof(void*) * 8;
constexpr wchar_t kName[] = L"larkspan-search-test.dll";

// Three folders: the program's, the current one, and one on the PATH.
class LibrarySearchTest : public ::testing::Test {
 protected:
  LibrarySearchTest() : earlierFolder_(std::filesystem::current_path()), earlierPath_(Path()) {
    for (const wchar_t* name : {L"\\program", L"\\current", L"\\path"}) MakeFolder(folder_ / name);
    std::filesystem::current_path(folder_ / L"\\current");
    SetPath((earlierPath_ + L";" + (folder_ / L"\\path")).c_str());
  }
  ~LibrarySearchTest() override {
    SetPath(earlierPath_.c_str());
    std::filesystem::current_path(earlierFolder_);
  }

  void Put(const std::wstring& place) const { WriteBytes(folder_ / place + L"\\" + kName, "x"); }

  std::optional<FoundLibrary> Find() const {
    return FindLibrary(folder_ / L"\\program", kBits, kName);
  }

  void ExpectIn(const std::wstring& name, LibraryPlace place) const {
    const auto found = Find();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->place, place);
    EXPECT_TRUE(std::filesystem::equivalent(found->file, folder_ / name + L"\\" + kName));
  }

 private:
  static std::wstring Path() {
    std::wstring text(GetEnvironmentVariableW(L"PATH", nullptr, 0), L'\0');
    text.resize(GetEnvironmentVariableW(L"PATH", text.data(), static_cast<DWORD>(text.size())));
    return text;
  }
  static void SetPath(const wchar_t* path) { SetEnvironmentVariableW(L"PATH", path); }

  TempFolder folder_;
  std::filesystem::path earlierFolder_;
  std::wstring earlierPath_;
};

TEST_F(LibrarySearchTest, FindsNothingWhereNothingIs) { EXPECT_FALSE(Find()); }

TEST_F(LibrarySearchTest, LooksAlongThePathAtLast) {
  Put(L"\\path");
  ExpectIn(L"\\path", LibraryPlace::kPath);
}

TEST_F(LibrarySearchTest, TheCurrentFolderComesBeforeThePath) {
  Put(L"\\path");
  Put(L"\\current");
  ExpectIn(L"\\current", LibraryPlace::kCurrentFolder);
}

TEST_F(LibrarySearchTest, TheFolderOfTheProgramComesFirst) {
  Put(L"\\path");
  Put(L"\\current");
  Put(L"\\program");
  ExpectIn(L"\\program", LibraryPlace::kProgramFolder);
}

TEST_F(LibrarySearchTest, AFolderOfThatNameIsNone) {
  MakeFolder(std::filesystem::current_path().wstring() + L"\\" + kName);
  Put(L"\\path");
  ExpectIn(L"\\path", LibraryPlace::kPath);
}

TEST_F(LibrarySearchTest, WindowsOwnComeBeforeTheCurrentFolder) {
  WriteBytes(L"kernel32.dll", "x");
  const auto found =
      FindLibrary(std::filesystem::current_path().wstring() + L"\\none", kBits, L"kernel32.dll");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->place, LibraryPlace::kSystemFolder);
}

}  // namespace
}  // namespace larkspan::console
