// Which folders are parts, and which are left alone.
#include "console/parts/PartFolders.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

using Ids = std::vector<std::uint32_t>;

// Two parts; the first has a note, a log and a report.
class PartFoldersTest : public ::testing::Test {
 protected:
  PartFoldersTest() {
    EXPECT_TRUE(MakePart(out_, Ids{0x906, 0x90A}));
    EXPECT_TRUE(MakePart(out_, Ids{0x90E}));
    WriteBytes(first_ + L"\\data\\00000906.dxl", "note");
    WriteBytes(first_ + L"\\log.txt", "line");
    WriteBytes(first_ + L"\\audit.txt", "Database size after archive : 5\r\n");
  }

  void ExpectThatItCannotBeTold() const { EXPECT_FALSE(ReadParts(out_).has_value()); }

  const PauseRecorder pauses_;
  const TempFolder folder_;
  const std::wstring& out_ = folder_.path();
  const std::wstring first_ = PartFolder(out_, 0x906);
  const std::wstring second_ = PartFolder(out_, 0x90E);
};

TEST_F(PartFoldersTest, APartHasItsListAndWhatTellsThatItIsDone) {
  const std::vector<Part> parts = ReadParts(out_).value();
  ASSERT_EQ(parts.size(), 2u);
  EXPECT_EQ(parts[0].notes, (Ids{0x906, 0x90A}));
  EXPECT_EQ(ReadBytes(first_ + L"\\idtable.txt"), "00000906\r\n0000090A\r\n");
  EXPECT_TRUE(IsPartDone(parts[0]));
  EXPECT_EQ(SizeAfterLine(first_), "Database size after archive : 5");
  WriteBytes(first_ + L"\\audit.txt", "Database size after");
  EXPECT_FALSE(IsPartDone(parts[0]));
}

TEST_F(PartFoldersTest, WithoutTheirFolderThereAreNone) {
  std::filesystem::remove_all(out_ + L"\\parts");
  EXPECT_TRUE(ReadParts(out_).value().empty());
  EXPECT_TRUE(pauses_.pauses().empty());
}

TEST_F(PartFoldersTest, WhatDidNotBecomeAPartIsRemoved) {
  std::filesystem::remove(second_ + L"\\idtable.txt");
  WriteBytes(second_ + L"\\idtable.txt.new", "0000");
  WriteBytes(second_ + L"\\data\\desktop.ini", "the system's");
  EXPECT_EQ(ReadParts(out_).value().size(), 1u);
  RemoveUnfinishedParts(out_);
  EXPECT_FALSE(Exists(second_));
  EXPECT_EQ(ReadParts(out_).value().size(), 1u);
}

TEST_F(PartFoldersTest, ATornListIsNoneWhereNobodyWasAtWork) {
  for (const char* list : {"", "0000090E\r\n0000"}) {
    ASSERT_TRUE(MakePart(out_, Ids{0x90E}));
    WriteBytes(second_ + L"\\idtable.txt", list);
    RemoveUnfinishedParts(out_);
    EXPECT_FALSE(Exists(second_)) << list;
  }
}

TEST_F(PartFoldersTest, ANoteOrALogWithoutAWholeListIsNeitherRemovedNorPassedOver) {
  for (const wchar_t* file : {L"\\design2\\0000090E.dxl", L"\\log.txt"}) {
    WriteBytes(second_ + L"\\idtable.txt", "0000090E\r\n0000");
    WriteBytes(second_ + file, "what a worker wrote");
    RemoveUnfinishedParts(out_);
    EXPECT_EQ(ReadBytes(second_ + file), "what a worker wrote");
    EXPECT_EQ(ReadBytes(second_ + L"\\idtable.txt"), "0000090E\r\n0000");
    ExpectThatItCannotBeTold();
    std::filesystem::remove(second_ + file);
  }
}

TEST_F(PartFoldersTest, AListThatIsHeldDoesNotPassForNone) {
  const HANDLE held = CreateFileW((second_ + L"\\idtable.txt").c_str(), GENERIC_READ, 0, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  RemoveUnfinishedParts(out_);
  ExpectThatItCannotBeTold();
  EXPECT_EQ(pauses_.pauses(), std::vector<long long>(8, 1000));
  CloseHandle(held);
  EXPECT_EQ(ReadParts(out_).value().size(), 2u);
}

TEST_F(PartFoldersTest, AFolderThatCannotBeListedDoesNotPassForEmpty) {
  const HANDLE held = CreateFileW((out_ + L"\\parts").c_str(), GENERIC_READ | DELETE, 0, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  ExpectThatItCannotBeTold();
  EXPECT_EQ(pauses_.pauses(), std::vector<long long>(4, 1000));
  CloseHandle(held);
  EXPECT_EQ(ReadParts(out_).value().size(), 2u);
}

TEST_F(PartFoldersTest, AFileInTheirPlaceHoldsNone) {
  std::filesystem::remove_all(out_ + L"\\parts");
  WriteBytes(out_ + L"\\parts", "a file");
  EXPECT_TRUE(ReadParts(out_).value().empty());
  EXPECT_FALSE(MakePart(out_, Ids{0x906}));
  EXPECT_FALSE(FoldersIn(out_ + L"\\parts").has_value());
  EXPECT_FALSE(HoldsNothing(out_ + L"\\parts"));
}

TEST_F(PartFoldersTest, WhereAWorkerWasNoPartIsMadeAnew) {
  EXPECT_FALSE(MakePart(out_, Ids{0x906}));
  std::filesystem::remove(first_ + L"\\log.txt");
  EXPECT_FALSE(MakePart(out_, Ids{0x906}));
  EXPECT_EQ(ReadBytes(first_ + L"\\idtable.txt"), "00000906\r\n0000090A\r\n");
  std::filesystem::remove(first_ + L"\\data\\00000906.dxl");
  EXPECT_TRUE(MakePart(out_, Ids{0x906}));
  WriteBytes(first_ + L"\\log.txt", "line");
  EXPECT_FALSE(MakePart(out_, Ids{0x906}));
}

}  // namespace
}  // namespace larkspan::console
