#include "console/doctor/ProgramFile.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <random>

#include "notes/LibraryNames.h"
#include "tests/console/doctor/HandMadeLibrary.h"
#include "tests/support/FileBytes.h"
#include "tests/support/Program.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

using FileBytes = std::vector<std::byte>;
using NameList = std::vector<std::string_view>;

constexpr std::array<std::string_view, 3> kLetters = {"Alpha", "Beta", "Gamma"};

NameList MissingIn(const FileBytes& bytes,
                   const NameList& names = {kLetters.begin(), kLetters.end()}) {
  return ProgramFile(bytes).NamesMissing(names);
}

// Memory behind which there is none: a read past the bytes ends the program.
class GuardedMemory {
 public:
  GuardedMemory()
      : pages_(static_cast<std::byte*>(
            VirtualAlloc(nullptr, 2 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
    DWORD earlier = 0;
    EXPECT_TRUE(VirtualProtect(pages_ + kPage, kPage, PAGE_NOACCESS, &earlier));
  }
  ~GuardedMemory() { VirtualFree(pages_, 0, MEM_RELEASE); }
  GuardedMemory(const GuardedMemory&) = delete;
  GuardedMemory& operator=(const GuardedMemory&) = delete;

  // The bytes there, until the next ones come.
  Bytes Hold(const FileBytes& bytes) {
    std::byte* const begin = pages_ + kPage - bytes.size();
    std::copy(bytes.begin(), bytes.end(), begin);
    return {begin, bytes.size()};
  }

 private:
  static constexpr std::size_t kPage = 4096;

  std::byte* pages_;
};

FileBytes Cut(const FileBytes& bytes, std::size_t size) {
  return FileBytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
}

class ProgramFileTest : public ::testing::TestWithParam<int> {
 protected:
  HandMadeLibrary library_{.bits = GetParam()};
};

TEST_P(ProgramFileTest, TellsItsWordSizeAndProcessor) {
  const FileBytes bytes = library_.Bytes();
  const ProgramFile file(bytes);
  EXPECT_EQ(file.fault(), "");
  EXPECT_EQ(file.wordBits(), GetParam());
  EXPECT_EQ(file.processor(), GetParam() == 64 ? 0x8664 : 0x14C);
}

TEST_P(ProgramFileTest, LacksNoNameThatItExports) {
  EXPECT_EQ(MissingIn(library_.Bytes()), NameList());
}

TEST_P(ProgramFileTest, LacksTheOthersInTheirOrder) {
  EXPECT_EQ(MissingIn(library_.Bytes(), {"Zeta", "Beta", "Alph", "Alphabet", ""}),
            (NameList{"Zeta", "Alph", "Alphabet", ""}));
}

// A function that lies within the export table is the text of where it is passed on to.
TEST_P(ProgramFileTest, ANameThatIsPassedOnIsThere) {
  FileBytes bytes = library_.Bytes();
  PutNumber(bytes, kSectionPlace + 0x40, kSectionAddress + 0x20, 4);
  EXPECT_EQ(MissingIn(bytes), NameList());
}

TEST_P(ProgramFileTest, ANameWithoutAFunctionIsMissing) {
  FileBytes bytes = library_.Bytes();
  PutNumber(bytes, kSectionPlace + 0x44, 0, 4);
  EXPECT_EQ(MissingIn(bytes), NameList{"Beta"});
}

TEST_P(ProgramFileTest, ANameWhoseNumberIsNoFunctionsIsMissing) {
  FileBytes bytes = library_.Bytes();
  // Behind the functions that the table counts stands something else.
  PutNumber(bytes, kSectionPlace + 0x40 + 3 * 4, 0x2000, 4);
  PutNumber(bytes, kSectionPlace + 0xC4, 3, 2);
  EXPECT_EQ(MissingIn(bytes), NameList{"Gamma"});
}

TEST_P(ProgramFileTest, ANameOutsideEverySectionIsMissing) {
  FileBytes bytes = library_.Bytes();
  PutNumber(bytes, kSectionPlace + 0x80, 0xFFFFFFFF, 4);
  PutNumber(bytes, kSectionPlace + 0x84, 0, 4);
  EXPECT_EQ(MissingIn(bytes), (NameList{"Alpha", "Beta"}));
}

TEST_P(ProgramFileTest, ANameWithoutItsEndIsMissing) {
  FileBytes bytes = library_.Bytes();
  const std::size_t place = bytes.size() - 4;
  PutNumber(bytes, kSectionPlace + 0x84, kSectionAddress + kSectionSize - 4, 4);
  for (std::size_t i = 0; i < 4; ++i) bytes[place + i] = static_cast<std::byte>("Beta"[i]);
  EXPECT_EQ(MissingIn(bytes), NameList{"Beta"});
}

TEST_P(ProgramFileTest, ACountThatIsGreaterThanTheFileIsNotBelieved) {
  FileBytes bytes = library_.Bytes();
  for (const std::size_t place : {20u, 24u}) PutNumber(bytes, kSectionPlace + place, 0xFFFFFFFF, 4);
  EXPECT_EQ(MissingIn(bytes, {"Zeta", "Gamma"}), NameList{"Zeta"});
}

TEST_P(ProgramFileTest, WithoutAnExportTableAllAreMissing) {
  library_.directories = 0;
  EXPECT_EQ(MissingIn(library_.Bytes()).size(), 3u);
}

TEST_P(ProgramFileTest, MoreSectionsThanWindowsLoadsAreAFault) {
  library_.sections = 97;
  const FileBytes bytes = library_.Bytes();
  EXPECT_EQ(ProgramFile(bytes).fault(), "its list of sections is damaged");
}

TEST_P(ProgramFileTest, ThatIsCutIsNoProgramOrLacksNames) {
  const FileBytes whole = library_.Bytes();
  GuardedMemory memory;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const ProgramFile file(memory.Hold(Cut(whole, size)));
    const NameList missing = file.NamesMissing(kLetters);
    // The texts end where the last name does.
    if (size <= kSectionPlace + 0x100 + 16) {
      EXPECT_TRUE(!file.fault().empty() || !missing.empty()) << size;
    } else {
      EXPECT_TRUE(missing.empty()) << size;
    }
  }
}

TEST_P(ProgramFileTest, WhateverIsFlippedInItIsRead) {
  const FileBytes whole = library_.Bytes();
  GuardedMemory memory;
  std::mt19937 random(GetParam());
  std::size_t faults = 0;
  for (int seed = 0; seed < 10'000; ++seed) {
    FileBytes bytes = Cut(whole, whole.size() - random() % 64);
    for (auto flips = 1 + random() % 8; flips > 0; --flips) {
      bytes[random() % bytes.size()] ^= static_cast<std::byte>(1u << random() % 8);
    }
    const ProgramFile file(memory.Hold(bytes));
    EXPECT_LE(file.NamesMissing(kLetters).size(), kLetters.size());
    faults += file.fault().empty() ? 0 : 1;
  }
  EXPECT_GT(faults, 0u);
  EXPECT_LT(faults, 10'000u);
}

INSTANTIATE_TEST_SUITE_P(OfEachWordSize, ProgramFileTest, ::testing::Values(32, 64));

TEST(ProgramFileGarbageTest, BytesOfAnyKindAreRead) {
  GuardedMemory memory;
  std::mt19937 random(7);
  for (int seed = 0; seed < 10'000; ++seed) {
    FileBytes bytes(random() % 2000);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(random());
    // Far enough into the reader.
    if (bytes.size() > 0x200) {
      const FileBytes good = HandMadeLibrary{}.Bytes();
      std::copy_n(good.begin(), seed % 0x200, bytes.begin());
    }
    const ProgramFile file(memory.Hold(bytes));
    EXPECT_LE(file.NamesMissing(kLetters).size(), kLetters.size());
  }
}

TEST(ProgramFileGarbageTest, WhatIsNoProgramSaysSo) {
  const std::string none = "it is no program or library of Windows";
  EXPECT_EQ(ProgramFile({}).fault(), none);
  FileBytes bytes = HandMadeLibrary{}.Bytes();
  PutNumber(bytes, 0x3C, 0xFFFFFFF0, 4);
  EXPECT_EQ(ProgramFile(bytes).fault(), none);
  bytes = HandMadeLibrary{}.Bytes();
  PutNumber(bytes, kMagicPlace, 0x107, 2);
  EXPECT_EQ(ProgramFile(bytes).fault(), none);
}

TEST(ProgramFileReadTest, ThatOfTheStandInHasAllNames) {
  const auto bytes = ReadProgramFile(testing::ProgramFolder() + L"\\nnotes.dll");
  ASSERT_TRUE(bytes);
  const ProgramFile file(*bytes);
  EXPECT_EQ(file.wordBits(), static_cast<int>(sizeof(void*) * 8));
  EXPECT_EQ(file.NamesMissing(LinkedLibraryNames()), NameList());
  EXPECT_EQ(file.NamesMissing(kLookedUpLibraryNames), NameList());
}

TEST(ProgramFileReadTest, ALibraryWithoutANameLacksThat) {
  const auto bytes = ReadProgramFile(testing::ProgramFolder() + L"\\bare\\nnotes.dll");
  ASSERT_TRUE(bytes);
  EXPECT_EQ(ProgramFile(*bytes).NamesMissing(kLookedUpLibraryNames),
            NameList{"NSFSearchExtended3"});
}

TEST(ProgramFileReadTest, AllBytesAreThere) {
  const TempFolder folder;
  const std::wstring path = folder / L"\\a.dll";
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1} << 20, (std::size_t{1} << 20) + 3}) {
    std::string text(size, 'x');
    WriteBytes(path, text);
    const auto bytes = ReadProgramFile(path);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->size(), size);
  }
  EXPECT_FALSE(ReadProgramFile(folder / L"\\none.dll"));
  EXPECT_FALSE(ReadProgramFile(folder.path()));
}

}  // namespace
}  // namespace larkspan::console
