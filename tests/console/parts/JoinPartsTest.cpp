// Parts become one export, whatever happens meanwhile.
#include "console/parts/JoinParts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "console/text/Utf.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputTree.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

using testing::OutputTree;

constexpr char kQuota[] = "#WARNING# - Unable to read database quota (gone)\r\n";

constexpr char kEnd[] = "#WARNING# - The end of the Notes runtime was ended by an exception\r\n";

// An output folder whose first worker has exported one note, and two parts behind.
class JoinPartsTest : public ::testing::Test {
 protected:
  JoinPartsTest() { MakeAnew(); }

  void MakeAnew() {
    std::filesystem::remove_all(out_);
    MakeFolder(out_);
    for (const wchar_t* name : {L"\\data", L"\\design", L"\\design2", L"\\profile"})
      MakeFolder(out_ + name);
    Write(L"\\data\\00000902.dxl", "first");
    Write(L"\\log.txt", "#WARNING# - of the views\r\n");
    Write(L"\\unidindex.txt", "00000902,A\r\n");
    AddPart({0x906, 0x90A}, "second");
    AddPart({0x90E}, "third");
  }

  void Write(const std::wstring& name, const std::string& text) { WriteBytes(out_ + name, text); }

  void AddPart(const std::vector<std::uint32_t>& notes, const std::string& text) {
    ASSERT_TRUE(MakePart(out_, notes));
    const std::wstring part = PartFolder(out_, notes.front()).substr(out_.size());
    const std::wstring file = part.substr(part.rfind(L'\\')) + L".dxl";
    Write(part + L"\\data" + file, text);
    Write(part + L"\\design2" + file, "raw " + text);
    Write(part + L"\\log.txt", "#WARNING# - " + text + "\r\n" + kQuota);
    Write(part + L"\\unidindex.txt", text + "\r\n");
    Write(part + L"\\audit.txt", "Database size after archive : 5\r\n");
  }

  // At its first note, as a run that is ended.
  void CutOff(std::uint32_t firstNote) {
    const std::wstring part = PartFolder(out_, firstNote);
    WriteBytes(part + L"\\audit.txt", "");
    WriteBytes(part + L"\\marker.txt", NoteIdText(firstNote) + "\r\n");
    WriteBytes(part + L"\\temp.tmp", "half");
  }

  std::vector<Part> Parts() const { return ReadParts(out_).value(); }

  OutputTree Tree() const {
    OutputTree tree = testing::ReadOutputTree(out_);
    std::erase_if(tree, [](const auto& entry) { return entry.first.ends_with('/'); });
    return tree;
  }

  OutputTree Joined(bool isWhole) const {
    const std::string quota = kQuota;
    const std::string log =
        "#WARNING# - of the views\r\n#WARNING# - second\r\n#WARNING# - third\r\n";
    return {{"data/00000902.dxl", "first"},
            {"data/00000906.dxl", "second"},
            {"data/0000090E.dxl", "third"},
            {"design2/00000906.dxl", "raw second"},
            {"design2/0000090E.dxl", "raw third"},
            {"log.txt", isWhole ? log + quota : log},
            {"unidindex.txt", "00000902,A\r\nsecond\r\nthird\r\n"}};
  }

  const PauseRecorder pauses_;
  const TempFolder folder_;
  const std::wstring out_ = folder_.path();
};

TEST_F(JoinPartsTest, FilesAndLinesComeInTheOrderOfTheNotes) {
  EXPECT_TRUE(HasParts(out_));
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(testing::DescribeDifferences(Joined(true), Tree()), "");
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, OnlyTheEndOfAWholeListTellsOfTheSize) {
  EXPECT_TRUE(JoinParts(out_, Parts(), false).isDone);
  EXPECT_EQ(testing::DescribeDifferences(Joined(false), Tree()), "");
}

TEST_F(JoinPartsTest, OnlyTheLastWorkerOfAWholeListTellsOfItsEnd) {
  for (const wchar_t* folder : {L"", L"\\parts\\00000906", L"\\parts\\0000090E"}) {
    const std::wstring log = std::wstring(folder) + L"\\log.txt";
    Write(log, ReadBytes(out_ + log) + kEnd);
  }
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  OutputTree expected = Joined(true);
  expected["log.txt"] += kEnd;
  EXPECT_EQ(testing::DescribeDifferences(expected, Tree()), "");
}

// It looked how large the database is at its beginning.
TEST_F(JoinPartsTest, WhatTheFirstWorkerCouldNotReadOfTheSizeStays) {
  const std::string own = std::string(kQuota) + "#WARNING# - of the views\r\n";
  Write(L"\\log.txt", own);
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  OutputTree expected = Joined(true);
  expected["log.txt"] = kQuota + expected["log.txt"];
  EXPECT_EQ(testing::DescribeDifferences(expected, Tree()), "");
}

TEST_F(JoinPartsTest, WhatAnEarlierWorkerAloneToldOfItsEndStays) {
  Write(L"\\parts\\00000906\\log.txt", std::string("#WARNING# - second\r\n") + kQuota + kEnd);
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  OutputTree expected = Joined(true);
  expected["log.txt"] += kEnd;
  EXPECT_EQ(testing::DescribeDifferences(expected, Tree()), "");
}

TEST_F(JoinPartsTest, TheEndOfTheFirstWorkerStaysWhereTheListIsNotWhole) {
  Write(L"\\log.txt", kEnd);
  Write(L"\\parts\\0000090E\\log.txt", kEnd);
  EXPECT_TRUE(JoinParts(out_, Parts(), false).isDone);
  EXPECT_EQ(ReadBytes(out_ + L"\\log.txt"), std::string(kEnd) + "#WARNING# - second\r\n");
}

// The joiner reads a text in pieces.
TEST_F(JoinPartsTest, ALongTextIsJoinedLineByLine) {
  std::string log;
  for (int line = 0; line < 9000; ++line) log += "line " + std::to_string(line) + "\r\n";
  for (const bool hasEnd : {true, false}) {
    MakeAnew();
    const std::string lines = log + (hasEnd ? "" : "half a line");
    Write(L"\\parts\\00000906\\log.txt", kQuota + lines);
    EXPECT_TRUE(JoinParts(out_, Parts(), false).isDone);
    EXPECT_EQ(ReadBytes(out_ + L"\\log.txt"),
              "#WARNING# - of the views\r\n" + lines + "#WARNING# - third\r\n");
  }
}

TEST_F(JoinPartsTest, WhatARunLeftOfItsLastNoteIsTheRuns) {
  CutOff(0x90E);
  Write(L"\\marker.txt", "00000902\r\n");
  Write(L"\\temp.tmp", "older");
  EXPECT_TRUE(JoinParts(out_, Parts(), false).isDone);
  EXPECT_EQ(ReadBytes(out_ + L"\\marker.txt"), "0000090E\r\n");
  EXPECT_EQ(ReadBytes(out_ + L"\\temp.tmp"), "half");
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, WhatAPartThatIsDoneLeftOfANoteIsDeleted) {
  for (const wchar_t* part : {L"\\parts\\00000906", L"\\parts\\0000090E"}) {
    Write(std::wstring(part) + L"\\marker.txt", "0000090E\r\n");
    Write(std::wstring(part) + L"\\temp.tmp", "half");
  }
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(testing::DescribeDifferences(Joined(true), Tree()), "");
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, AMarkerOfNoNoteOfThePartIsDropped) {
  CutOff(0x90E);
  WriteBytes(PartFolder(out_, 0x90E) + L"\\marker.txt", "0000090D\r\n");
  EXPECT_TRUE(JoinParts(out_, Parts(), false).isDone);
  EXPECT_FALSE(Exists(out_ + L"\\marker.txt"));
  EXPECT_TRUE(Exists(out_ + L"\\temp.tmp"));
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, AnEarlierCopyOfANoteGoesWhereTheRunFindsIt) {
  Write(L"\\0000090A.dxl.first", "older");
  Write(L"\\parts\\00000906\\0000090A.dxl.first", "earlier");
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(ReadBytes(out_ + L"\\0000090A.dxl.first"), "earlier");
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, PartsBehindAGapStay) {
  std::vector<Part> parts = Parts();
  parts.pop_back();
  EXPECT_TRUE(JoinParts(out_, parts, false).isDone);
  EXPECT_TRUE(HasParts(out_));
  EXPECT_EQ(Parts().size(), 1u);
  EXPECT_FALSE(Exists(out_ + L"\\data\\0000090E.dxl"));
}

TEST_F(JoinPartsTest, AFileThatIsHeldForAMomentIsWaitedFor) {
  const FileFaults faults("move 0000090e.dxl 1-4 sharingViolation");
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(pauses_.pauses(), std::vector<long long>(4, 1000));
  EXPECT_EQ(testing::DescribeDifferences(Joined(true), Tree()), "");
}

TEST_F(JoinPartsTest, ATextThatIsHeldForAMomentIsWaitedFor) {
  const FileFaults faults("delete audit.txt 1-3 sharingViolation");
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(pauses_.pauses(), std::vector<long long>(3, 1000));
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, NothingIsDeletedThatWasNotMoved) {
  const std::wstring strange = PartFolder(out_, 0x90E) + L"\\data\\below";
  MakeFolder(strange);
  WriteBytes(strange + L"\\note.dxl", "mine");
  EXPECT_FALSE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(ReadBytes(out_ + L"\\joined\\0000090E\\data\\below\\note.dxl"), "mine");
  EXPECT_EQ(ReadBytes(out_ + L"\\data\\00000906.dxl"), "second");
  std::filesystem::remove_all(out_ + L"\\joined\\0000090E\\data\\below");
  EXPECT_TRUE(FinishJoining(out_).isDone);
  EXPECT_EQ(testing::DescribeDifferences(Joined(true), Tree()), "");
}

TEST_F(JoinPartsTest, AFileOfTheSystemGoesWithItsFolder) {
  Write(L"\\data\\desktop.ini", "the root's");
  for (const wchar_t* folder : {L"", L"\\00000906", L"\\00000906\\data", L"\\0000090E\\data"}) {
    Write(L"\\parts" + std::wstring(folder) + L"\\Desktop.ini", "the system's");
    Write(L"\\parts" + std::wstring(folder) + L"\\thumbs.db", "the system's");
  }
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  OutputTree expected = Joined(true);
  expected["data/desktop.ini"] = "the root's";
  EXPECT_EQ(testing::DescribeDifferences(expected, Tree()), "");
  EXPECT_FALSE(HasParts(out_));
}

TEST_F(JoinPartsTest, EachPartThatIsJoinedIsTold) {
  std::set<std::pair<std::uint64_t, std::uint64_t>> told;
  const auto onPart = [&](std::uint64_t done, std::uint64_t all) {
    told.emplace(done, all);
    return true;
  };
  EXPECT_TRUE(JoinParts(out_, Parts(), true, onPart).isDone);
  EXPECT_EQ(told, (std::set<std::pair<std::uint64_t, std::uint64_t>>{{0, 2}, {1, 2}, {2, 2}}));
}

TEST_F(JoinPartsTest, ManyFilesAreMovedOnceEach) {
  OutputTree expected = Joined(true);
  for (std::uint32_t note = 0x1002; note < 0x1002 + 500; ++note) {
    const std::wstring file = L"\\" + Utf8ToWide(NoteIdText(note)) + L".dxl";
    Write(L"\\parts\\00000906\\data" + file, NoteIdText(note));
    expected["data/" + NoteIdText(note) + ".dxl"] = NoteIdText(note);
  }
  EXPECT_TRUE(JoinParts(out_, Parts(), true).isDone);
  EXPECT_EQ(testing::DescribeDifferences(expected, Tree()), "");
}

TEST_F(JoinPartsTest, BrokenOffAnywhereItIsUndoneOrFinished) {
  const OutputTree before = Tree();
  int brokenOff = 0;
  int undone = 0;
  JoinResult result;
  while (!result.isDone && brokenOff < 100) {
    SCOPED_TRACE(brokenOff);
    MakeAnew();
    int calls = 0;
    const auto breakOff = [&](std::uint64_t, std::uint64_t) { return calls++ < brokenOff; };
    result = JoinParts(out_, Parts(), true, breakOff);
    EXPECT_EQ(result.blocked, L"");
    EXPECT_EQ(result.isBrokenOff, !result.isDone);
    if (result.isDone) break;
    EXPECT_TRUE(HasParts(out_));
    if (Tree() == before) ++undone;
    ++brokenOff;
    EXPECT_TRUE(FinishJoining(out_).isDone);
    const bool wasFinished = !HasParts(out_);
    EXPECT_EQ(testing::DescribeDifferences(wasFinished ? Joined(true) : before, Tree()), "");
  }
  // Before each of two parts is taken, and before each of two texts is joined.
  EXPECT_EQ(undone, 4);
  EXPECT_GT(brokenOff, 20);
  EXPECT_EQ(testing::DescribeDifferences(Joined(true), Tree()), "");
}

TEST_F(JoinPartsTest, NoFileIsReplaced) {
  Write(L"\\data\\0000090E.dxl", "mine");
  const JoinResult result = JoinParts(out_, Parts(), true);
  EXPECT_FALSE(result.isDone);
  EXPECT_EQ(result.blocked, out_ + L"\\joined\\0000090E\\data\\0000090E.dxl");
  EXPECT_EQ(ReadBytes(out_ + L"\\data\\0000090E.dxl"), "mine");
  EXPECT_TRUE(HasParts(out_));
}

// Each operation on files fails once, and all that follow it: as with a program that is ended
// there.
TEST_F(JoinPartsTest, CutOffAnywhereItIsUndoneOrFinished) {
  const OutputTree before = Tree();
  bool isUndone = false;
  bool isFinished = false;
  for (const std::string operation :
       {"folder", "open", "write", "flush", "close", "move", "delete"}) {
    for (int call = 1; call < 30; ++call) {
      SCOPED_TRACE(operation + " " + std::to_string(call));
      bool isJoined = false;
      {
        const FileFaults faults(operation + " * " + std::to_string(call) + "- accessDenied");
        isJoined = JoinParts(out_, Parts(), true).isDone;
      }
      if (isJoined) break;
      ASSERT_TRUE(FinishJoining(out_).isDone);
      const bool wasFinished = !HasParts(out_);
      ASSERT_EQ(testing::DescribeDifferences(wasFinished ? Joined(true) : before, Tree()), "");
      (wasFinished ? isFinished : isUndone) = true;
      MakeAnew();
    }
    MakeAnew();
  }
  EXPECT_TRUE(isUndone);
  EXPECT_TRUE(isFinished);
}

}  // namespace
}  // namespace larkspan::console
