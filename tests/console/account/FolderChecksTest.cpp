// What may lie in an output folder, and what the two lists of it may say.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "console/account/Verify.h"
#include "tests/console/account/HandMadeExport.h"

namespace larkspan::console {
namespace {

class FolderChecksTest : public ::testing::Test {
 protected:
  FolderChecksTest() { export_.Write(); }

  Lines ToldAll() { return Told(export_.Verify()); }

  // Without what the audit report says of the numbers of files.
  Lines ToldOfFiles() {
    Lines told = ToldAll();
    std::erase_if(told, [](const std::string& line) { return line == "audit-differs audit.txt"; });
    return told;
  }

  HandMadeExport export_;
};

TEST_F(FolderChecksTest, FilesOfTheSystemAreNoFindings) {
  for (const char* name : {"desktop.ini", "Thumbs.db", "data/DESKTOP.INI", "views/thumbs.db"})
    export_.WriteFile(name, "x");
  EXPECT_EQ(ToldAll(), Lines());
}

TEST_F(FolderChecksTest, TheExporterMayHaveCountedAFileOfTheSystem) {
  export_.WriteFile("data/Thumbs.db", "x");
  export_.Replace("audit.txt", "Data   :        3", "Data   :        4");
  export_.Replace("audit.txt", "Exported total documents :        6",
                  "Exported total documents :        7");
  export_.Replace("audit.txt", "processed:        6", "processed:        7");
  EXPECT_EQ(ToldAll(), Lines());
}

TEST_F(FolderChecksTest, TheStageOfTheOutcomeIsKnown) {
  export_.WriteFile("outcome.json.new", "{");
  EXPECT_EQ(ToldAll(), Lines());
}

struct Stranger {
  const char* name;
  const char* kind;
};

class StrangerTest : public FolderChecksTest, public ::testing::WithParamInterface<Stranger> {};

TEST_P(StrangerTest, IsAFinding) {
  export_.WriteFile(GetParam().name, NoteDxl(0x902));
  const std::string finding = std::string(GetParam().kind) + " " + GetParam().name;
  EXPECT_EQ(ToldOfFiles(), Lines{finding});
}

INSTANTIATE_TEST_SUITE_P(
    Names, StrangerTest,
    ::testing::Values(
        Stranger{"notes.txt", "unknown-file"}, Stranger{"scan.txt", "unknown-file"},
        Stranger{"00000902.dxl", "unknown-file"}, Stranger{"data/00000900.dxl", "unknown-file"},
        Stranger{"data/902.dxl", "unknown-file"}, Stranger{"data/00000902.dxl.bak", "unknown-file"},
        Stranger{"data/00000902.xml", "unknown-file"},
        Stranger{"data/below/00000902.dxl", "unknown-file"},
        Stranger{"design2/00000900.dxl", "unknown-file"},
        Stranger{"profile/0000090e.dxl.dxl", "unknown-file"},
        Stranger{"views/00000106.dxl", "unknown-file"}, Stranger{"views/106.xml", "unknown-file"},
        Stranger{"other/deep/down/file", "unknown-file"},
        Stranger{"other/outcome.json", "unknown-file"}, Stranger{"marker.txt", "left-over"},
        Stranger{"temp.tmp", "left-over"}, Stranger{"db.dxl.new", "left-over"},
        Stranger{"views/00000106.xml.new", "left-over"}),
    [](const auto& test) { return "Name" + std::to_string(test.index); });

TEST_F(FolderChecksTest, ANameInAnotherCaseIsNoNotes) {
  export_.Rename("data/0000090A.dxl", "data/x");
  export_.Rename("data/x", "data/0000090a.dxl");
  EXPECT_EQ(ToldOfFiles(), (Lines{"unaccounted 0000090A", "unknown-file data/0000090a.dxl"}));
}

TEST_F(FolderChecksTest, AHiddenFileIsAFileLikeAnother) {
  export_.WriteFile("data/hidden", "x");
  SetFileAttributesW((export_.folder() + L"\\data\\hidden").c_str(),
                     FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  EXPECT_EQ(ToldOfFiles(), Lines{"unknown-file data/hidden"});
}

TEST_F(FolderChecksTest, AnEmptyFolderIsNoFinding) {
  std::filesystem::create_directory(export_.folder() + L"\\empty");
  EXPECT_EQ(ToldAll(), Lines());
}

TEST_F(FolderChecksTest, AFolderBeyondAllDepthIsNotLookedInto) {
  std::string name;
  for (int i = 0; i < 34; ++i) name += "a/";
  export_.WriteFile(name + "file", "x");
  EXPECT_EQ(ToldAll(), Lines{"unreadable " + name.substr(0, 33 * 2 - 1)});
}

TEST_F(FolderChecksTest, FilesOfOtherPeoplesLanguagesAreNamed) {
  export_.WriteFile("data/\xC3\xA4\xE6\x97\xA5.dxl", "x");
  EXPECT_EQ(ToldOfFiles(), Lines{"unknown-file data/\xC3\xA4\xE6\x97\xA5.dxl"});
}

TEST_F(FolderChecksTest, AMissingFileOfTheDatabaseIsAFinding) {
  export_.Remove("acl.dxl");
  export_.Remove("db.dxl");
  export_.Remove("idtable.txt");
  const Lines told = ToldAll();
  for (const char* line : {"missing acl.dxl", "missing db.dxl", "missing idtable.txt"})
    EXPECT_EQ(std::count(told.begin(), told.end(), line), 1) << line;
}

TEST_F(FolderChecksTest, WhatIsInUseIsUnreadable) {
  const HANDLE held = CreateFileW((export_.folder() + L"\\data\\00000902.dxl").c_str(),
                                  GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  EXPECT_EQ(ToldAll(), Lines{"unreadable data/00000902.dxl"});
  CloseHandle(held);
}

TEST_F(FolderChecksTest, WhatIsOpenElsewhereForWritingIsRead) {
  const HANDLE held =
      CreateFileW((export_.folder() + L"\\data\\00000902.dxl").c_str(), GENERIC_WRITE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  EXPECT_EQ(ToldAll(), Lines());
  CloseHandle(held);
}

TEST_F(FolderChecksTest, TheCountsAreThoseOfTheFilesThatBelongThere) {
  export_.WriteFile("data/Thumbs.db", "x");
  export_.WriteFile("data/stranger", "x");
  const Account account = export_.Verify();
  Lines counts;
  for (const FolderCount& folder : account.folders)
    counts.push_back(folder.name + " " + std::to_string(folder.files));
  EXPECT_EQ(counts, (Lines{" 5", "data 3", "design 2", "design2 1", "profile 1", "views 1"}));
  EXPECT_EQ(account.folders[4].bytes, NoteDxl(0x90E).size());
}

TEST_F(FolderChecksTest, ViewsAndRawCopiesAndTheDatabasesFilesAreRecorded) {
  Lines names;
  for (const FileRecord& record : export_.Verify().records) names.push_back(record.name);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (Lines{"acl.dxl", "db.dxl", "design2/00000102.dxl", "views/00000106.xml"}));
}

TEST(VerifyFolderTest, AFolderOfNoExportGivesNoAccount) {
  const TempFolder folder;
  std::string whyNot;
  EXPECT_FALSE(VerifyFolder(folder.path(), nullptr, whyNot));
  EXPECT_EQ(whyNot,
            "This is no output folder: there is no idtable.txt, no audit.txt and no outcome.json.");
  EXPECT_FALSE(VerifyFolder(folder / L"\\none", nullptr, whyNot));
  EXPECT_EQ(whyNot, "There is no such folder.");
}

TEST(VerifyFolderTest, SlashesAtTheEndMakeNoDifference) {
  const HandMadeExport whole;
  whole.Write();
  std::string whyNot;
  EXPECT_TRUE(VerifyFolder(whole.folder() + L"\\/", nullptr, whyNot)) << whyNot;
}

TEST(VerifyFolderTest, ProgressBeginsAtNothingAndEndsAtAll) {
  const HandMadeExport whole;
  whole.Write();
  std::vector<std::pair<std::uint64_t, std::uint64_t>> calls;
  std::string whyNot;
  const auto note = [&](std::uint64_t done, std::uint64_t all) {
    calls.emplace_back(done, all);
    return true;
  };
  ASSERT_TRUE(VerifyFolder(whole.folder(), note, whyNot));
  EXPECT_EQ(calls.front(), (std::pair<std::uint64_t, std::uint64_t>(0, 10)));
  EXPECT_EQ(calls.back(), (std::pair<std::uint64_t, std::uint64_t>(10, 10)));
}

TEST(VerifyFolderTest, WhoeverWaitsCanBreakItOff) {
  const HandMadeExport whole;
  whole.Write();
  for (const std::uint64_t enough : {0u, 10u}) {
    std::string whyNot;
    const auto stop = [enough](std::uint64_t done, std::uint64_t) { return done != enough; };
    EXPECT_FALSE(VerifyFolder(whole.folder(), stop, whyNot)) << enough;
    EXPECT_EQ(whyNot, "The check was broken off.");
  }
}

// What idtable.txt is, and what is then told of it.
struct ListCase {
  const char* name;
  const char* from;
  const char* to;
  Lines told;
};

class NoteListTest : public FolderChecksTest, public ::testing::WithParamInterface<ListCase> {};

TEST_P(NoteListTest, IsHeldToItsForm) {
  export_.Replace("idtable.txt", GetParam().from, GetParam().to);
  EXPECT_EQ(ToldAll(), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, NoteListTest,
    ::testing::Values(
        ListCase{"LineFeedAlone", "00000902\r\n", "00000902\n", {"idtable idtable.txt"}},
        ListCase{"Twice", "00000902\r\n", "00000902\r\n00000902\r\n", {"idtable idtable.txt"}},
        ListCase{
            "OutOfOrder", "00000902\r\n00000906", "00000906\r\n00000902", {"idtable idtable.txt"}},
        ListCase{"NoLineEndAtTheEnd", "0000090E\r\n", "0000090E", {"idtable idtable.txt"}},
        ListCase{"EmptyLine", "00000902\r\n", "00000902\r\n\r\n", {"idtable idtable.txt"}},
        ListCase{"LowerCase",
                 "0000090A",
                 "0000090a",
                 {"index unidindex.txt", "unknown-file data/0000090A.dxl", "idtable idtable.txt"}},
        ListCase{
            "ALineLess",
            "0000090A\r\n",
            "",
            {"index unidindex.txt", "unknown-file data/0000090A.dxl", "audit-differs audit.txt"}},
        ListCase{"ALineMore",
                 "0000090A\r\n",
                 "0000090A\r\n0000090B\r\n",
                 {"unaccounted 0000090B", "audit-differs audit.txt"}}),
    [](const auto& test) { return test.param.name; });

class UnidIndexTest : public FolderChecksTest, public ::testing::WithParamInterface<ListCase> {};

TEST_P(UnidIndexTest, IsHeldToItsForm) {
  export_.Replace("unidindex.txt", GetParam().from, GetParam().to);
  EXPECT_EQ(ToldAll(), GetParam().told);
}

const std::string kNoIndexLine = "lost index line 0000090A index unidindex.txt has no line for it";

INSTANTIATE_TEST_SUITE_P(
    Indexes, UnidIndexTest,
    ::testing::Values(
        ListCase{"Comma", "0000090A,", "0000090A;", {kNoIndexLine, "index unidindex.txt"}},
        ListCase{"OneDigitLess",
                 "620000090A\r\n",
                 "62000090A\r\n",
                 {kNoIndexLine, "index unidindex.txt"}},
        ListCase{
            "NoDigit", "620000090A\r\n", "62000x090A\r\n", {kNoIndexLine, "index unidindex.txt"}},
        ListCase{"LineFeedAlone",
                 "620000090A\r\n",
                 "620000090A\n",
                 {kNoIndexLine, "index unidindex.txt"}},
        ListCase{
            "AnotherUnid", "620000090A\r\n", "620000090B\r\n", {"wrong-note data/0000090A.dxl"}},
        ListCase{"TwoUnids",
                 "0000090A,",
                 "0000090A,FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF\r\n0000090A,",
                 {"index unidindex.txt"}},
        ListCase{"TheSameLineTwice",
                 "0000090A,",
                 "0000090A,C12583D0004D1A2C22FD65620000090A\r\n0000090A,",
                 {}},
        ListCase{"AnUnlistedNote",
                 "0000090A,",
                 "0000090B,C12583D0004D1A2C22FD65620000090B\r\n0000090A,",
                 {"index unidindex.txt"}}),
    [](const auto& test) { return test.param.name; });

TEST_F(FolderChecksTest, WithoutAnIndexEachNoteLacksItsLine) {
  export_.Remove("unidindex.txt");
  const Account account = export_.Verify();
  EXPECT_EQ(account.losses.size(), 6u);
  EXPECT_EQ(account.Verdict(), ExitCode::kLosses);
}

TEST(EmptyExportTest, NeedsNoIndex) {
  HandMadeExport empty;
  empty.notes.clear();
  empty.hasView = false;
  empty.Write();
  std::filesystem::create_directory(empty.folder() + L"\\data");
  empty.Remove("unidindex.txt");
  const Account account = empty.Verify();
  EXPECT_TRUE(account.archive);
  EXPECT_EQ(Told(account), Lines());
}

}  // namespace
}  // namespace larkspan::console
