// What a batch makes of its list, its options and what it finds below its root.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/Utf8.h"
#include "console/batch/Root.h"
#include "console/batch/SafeName.h"
#include "tests/console/system/BatchTest.h"

namespace larkspan::console {
namespace {

class BatchOptionsTest : public BatchTest {
 protected:
  BatchOptionsTest() { run_.AddDatabase(L"a.nsf", testing::DocumentsJson(1)); }

  // A database of two notes, each of which takes so long.
  void AddSlow(const std::wstring& path, const std::string& milliseconds) {
    run_.AddDatabase(path, testing::DocumentsJson(
                               2, testing::FaultsMember(R"({"entry": "DXLExportNote", "wait": )" +
                                                        milliseconds + "}")));
  }

  std::wstring TablePath() const { return root_ + L"\\summary.csv"; }

  // It is replaced meanwhile, and cannot be opened for that moment.
  void AwaitInTable(const std::string& text) const {
    EXPECT_TRUE(AwaitCondition([&] {
      std::ifstream table(std::filesystem::path(TablePath()), std::ios::binary);
      return Holds(std::string(std::istreambuf_iterator<char>(table), {}), text);
    })) << text;
  }
};

TEST_F(BatchOptionsTest, FaultsOfTheCommandLineAreToldAndNothingIsDone) {
  List({"a.nsf"});
  EXPECT_EQ(Run({L"batch", list_}).code, 1u);
  EXPECT_EQ(Run({L"batch", L"--root", root_}).code, 1u);
  EXPECT_EQ(Batch({L"--jobs", L"0"}).code, 1u);
  EXPECT_EQ(Batch({L"--jobs", L"65"}).code, 1u);
  EXPECT_EQ(Batch({L"--per-server", L"0"}).code, 1u);
  EXPECT_EQ(Batch({L"--stall", L"soon"}).code, 1u);
  EXPECT_EQ(Batch({L"--json", L"--quiet"}).code, 1u);
  EXPECT_EQ(Run({L"batch", L"", L"--root", root_}).code, 1u);
  EXPECT_EQ(Run({L"batch", list_, L"--root", L""}).code, 1u);
  EXPECT_FALSE(std::filesystem::exists(root_));
}

TEST_F(BatchOptionsTest, AListThatCannotBeReadIsCodeTwo) {
  const ConsoleEnd missing = Batch();
  EXPECT_EQ(missing.code, 2u);
  EXPECT_TRUE(Holds(missing.errors, "list.txt': it cannot be read")) << missing.errors;
  List({"a.nsf", "Mill!!"});
  const ConsoleEnd faulty = Batch();
  EXPECT_EQ(faulty.code, 2u);
  EXPECT_TRUE(Holds(faulty.errors, "line 2 names no path")) << faulty.errors;
  EXPECT_FALSE(std::filesystem::exists(root_));
}

TEST_F(BatchOptionsTest, ARootThatCannotBeMadeIsCodeTwo) {
  List({"a.nsf"});
  WriteBytes(root_, "a file");
  const ConsoleEnd end = Batch();
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.errors, "cannot be made")) << end.errors;
}

TEST_F(BatchOptionsTest, OneBatchWorksBelowARoot) {
  List({"a.nsf"});
  std::filesystem::create_directories(root_);
  const RootLock lock(root_);
  ASSERT_TRUE(lock.IsHeld());
  const ConsoleEnd end = Batch();
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.errors, "another batch is at work in ")) << end.errors;
}

TEST_F(BatchOptionsTest, AnEmptyListIsWhole) {
  List({});
  const ConsoleEnd end = Batch();
  EXPECT_EQ(end.code, 0u) << end.errors;
  EXPECT_TRUE(Holds(end.output, "Whole: 0 of 0 databases done")) << end.output;
  EXPECT_TRUE(Summary().empty());
}

TEST_F(BatchOptionsTest, APersonIsToldOfEachDatabase) {
  List({"a.nsf", "none.nsf", "a.nsf"});
  const ConsoleEnd end = Batch();
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output, "Exporting 2 databases to ")) << end.output;
  EXPECT_TRUE(Holds(end.output, "1 line names a database again")) << end.output;
  EXPECT_TRUE(Holds(end.output, "Whole: a.nsf, 1 of 1 note in ")) << end.output;
  EXPECT_TRUE(Holds(end.output, "Could not run: none.nsf in ")) << end.output;
  EXPECT_TRUE(Holds(end.output, "Not all could run: 2 of 2 databases done: 1 whole, 1 failed in "));
  EXPECT_TRUE(Holds(end.output, "\\summary.html")) << end.output;
  const ConsoleEnd again = Batch({L"--quiet"});
  EXPECT_EQ(again.code, 2u);
  EXPECT_EQ(again.output, "");
  EXPECT_TRUE(Holds(again.errors, "Could not run: none.nsf")) << again.errors;
  EXPECT_FALSE(Holds(again.errors, "Whole")) << again.errors;
}

TEST_F(BatchOptionsTest, TheTableOfAListingIsTaken) {
  WriteBytes(list_,
             "server,path,title,data_modified,design_modified,bytes,identifier,kind\r\n"
             ",a.nsf,\"Notes, all\",,,512,,database\r\n,seeds,,,,0,,folder\r\n");
  EXPECT_EQ(Batch().code, 0u);
  EXPECT_EQ(Summary().at("a.nsf").at("title"), "Notes, all");
  EXPECT_EQ(Summary().at("seeds").at("state"), "folder");
}

TEST_F(BatchOptionsTest, ANameThatCannotBeHandedOnIsToldAndTheOthersAreDone) {
  List({"=b.nsf", "a.nsf"});
  const ConsoleEnd end = Batch();
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output,
                    "Could not run: =b.nsf: a name that begins with '=' cannot be "
                    "handed to larkspan.exe"))
      << end.output;
  EXPECT_EQ(States(),
            (std::map<std::string, std::string>{{"=b.nsf", "failed"}, {"a.nsf", "whole"}}));
}

TEST_F(BatchOptionsTest, ARootWithinAnExportIsRefused) {
  List({"a.nsf"});
  EXPECT_EQ(Batch().code, 0u);
  const std::wstring inside = FolderOf("a.nsf") + L"\\data\\more";
  Words words = BatchWords();
  words[3] = inside;
  const ConsoleEnd end = Run(words);
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.errors, "lies in the folder of an export")) << end.errors;
  EXPECT_FALSE(std::filesystem::exists(inside));
}

TEST_F(BatchOptionsTest, WhatIsAtWorkSaysSoInTheSummary) {
  AddSlow(L"b.nsf", "3000");
  List({"b.nsf"});
  const auto process = Start(BatchWords());
  AwaitInTable(",b.nsf,,running,");
  EXPECT_EQ(process->WaitForEnd().code, 0u);
}

TEST_F(BatchOptionsTest, ASummaryThatWasHeldIsRenewedWhenItIsLetGo) {
  List({"a.nsf"});
  EXPECT_EQ(Batch().code, 0u);
  AddSlow(L"b.nsf", "3000");
  List({"a.nsf", "b.nsf"});
  std::unique_ptr<ConsoleProcess> process;
  {
    // The programs that are started do not inherit it.
    const testing::UniqueSystemHandle held(CreateFileW(TablePath().c_str(), GENERIC_READ,
                                                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                       OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
    process = Start(BatchWords({L"--json"}));
    process->AwaitOutput("exportStart");
    EXPECT_FALSE(Holds(ReadBytes(TablePath()), "b.nsf"));
  }
  AwaitInTable(",b.nsf,,running,");
  EXPECT_EQ(process->WaitForEnd().code, 0u);
}

TEST_F(BatchOptionsTest, ForeignFoldersAreLeftAlone) {
  List({"a.nsf"});
  std::filesystem::create_directories(FolderOf("a.nsf"));
  WriteBytes(FolderOf("a.nsf") + L"\\mine.txt", "mine");
  EXPECT_EQ(Batch().code, 0u);
  EXPECT_EQ(ReadBytes(FolderOf("a.nsf") + L"\\mine.txt"), "mine");
  EXPECT_EQ(Summary().at("a.nsf").at("folder"),
            WideToUtf8(root_ + L"\\" + FolderNameWithSum({"", "a.nsf", "", false})));
}

TEST_F(BatchOptionsTest, TheOptionsOfAnExportReachEachOne) {
  List({"a.nsf"});
  EXPECT_EQ(Batch({L"--no-views", L"--debug", L"--full-access"}).code, 0u);
  const Json outcome = OutcomeOf(FolderOf("a.nsf"));
  EXPECT_EQ(outcome.at("views"), false);
  EXPECT_EQ(outcome.at("fullAccess"), true);
  EXPECT_TRUE(Holds(ReadBytes(FolderOf("a.nsf") + L"\\log.txt"), "DEBUG"));
}

TEST_F(BatchOptionsTest, EachExportHasItsWorkers) {
  List({"a.nsf"});
  EXPECT_EQ(Batch({L"--workers", L"3"}).code, 0u);
  const std::string command = OutcomeOf(FolderOf("a.nsf")).at("command").dump();
  EXPECT_TRUE(Holds(command, R"("--workers","3")")) << command;
}

TEST_F(BatchOptionsTest, TheWorkersOfAllExportsTogetherAreLimited) {
  List({"a.nsf"});
  const ConsoleEnd end = Batch({L"--jobs", L"8", L"--workers", L"3", L"--most-workers", L"7"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(Holds(end.output, ", 2 at once")) << end.output;
  EXPECT_EQ(Batch({L"--workers", L"3", L"--most-workers", L"2"}).code, 1u);
}

TEST_F(BatchOptionsTest, ADesignExportIsOne) {
  List({"a.nsf"});
  EXPECT_EQ(Batch({L"--design-only"}).code, 0u);
  EXPECT_EQ(OutcomeOf(FolderOf("a.nsf")).at("archive"), false);
}

TEST_F(BatchOptionsTest, TooManyLossesAreTooManyInEachExport) {
  run_.AddDatabase(L"b.nsf",
                   testing::DocumentsJson(
                       2, testing::FaultsMember(
                              R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 551})")));
  List({"a.nsf", "b.nsf"});
  EXPECT_EQ(Batch({L"--max-losses", L"0"}).code, 5u);
  EXPECT_EQ(States(),
            (std::map<std::string, std::string>{{"a.nsf", "whole"}, {"b.nsf", "incomplete"}}));
  EXPECT_EQ(Batch().code, 3u);
  EXPECT_TRUE(std::filesystem::exists(FolderOf("b.nsf")));
  EXPECT_TRUE(std::filesystem::exists(FolderOf("b.nsf") + L".attempt-1"));
}

using BatchPasswordTest = BatchTest;

// Of the samples, one note can be read with this ID file alone.
TEST_F(BatchPasswordTest, APasswordReachesTheExportsAndStandsNowhere) {
  List({"sealed.nsf"});
  const Words identity = {L"--id-file", L"ids\\no\u00E9.id"};
  EXPECT_EQ(Batch(identity).code, 1u);
  const std::string secret = "p\xC3\xA2querette";
  WriteBytes(run_.folder() + L"\\password.txt", secret + "\n");
  Words words = identity;
  words.insert(words.end(), {L"--password-file", run_.folder() + L"\\password.txt"});
  const ConsoleEnd end = Batch(words);
  EXPECT_EQ(end.code, 3u) << end.output << end.errors;
  EXPECT_EQ(Summary().at("sealed.nsf").at("exported"), "3");
  EXPECT_FALSE(Holds(end.output + end.errors, secret));
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root_))
    if (entry.is_regular_file()) {
      EXPECT_FALSE(Holds(ReadBytes(entry.path().wstring()), secret)) << entry.path();
    }
}

TEST_F(BatchOptionsTest, NoMoreThanItsShareOfAServer) {
  const std::string slow = testing::FaultsMember(R"({"entry": "DXLExportNote", "wait": 300})");
  for (const wchar_t* name : {L"b.nsf", L"c.nsf", L"d.nsf"})
    run_.AddDatabase(name, testing::DocumentsJson(2, slow));
  List({"Mill!!x.nsf", "b.nsf", "MILL!!y.nsf", "c.nsf", "d.nsf"});
  const ConsoleEnd end = Batch({L"--jobs", L"4", L"--per-server", L"2", L"--json"});
  const std::vector<Json> events = EventsIn(end.output);
  const std::string local;
  EXPECT_EQ(MostAtOnce(events, &local), 2u);
  EXPECT_GE(MostAtOnce(events), 3u);
  EXPECT_EQ(PathsOf(events, "exportEnd").size(), 5u);
}

TEST_F(BatchOptionsTest, WhatASealHasMadeABagIsFinished) {
  List({"a.nsf"});
  EXPECT_EQ(Batch().code, 0u);
  EXPECT_EQ(Run({L"seal", FolderOf("a.nsf")}).code, 0u);
  const ConsoleEnd end = Batch({L"--json"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(PathsOf(EventsIn(end.output), "exportStart").empty());
  EXPECT_EQ(EventsIn(end.output).back().at("counts").at("finishedBefore"), 1);
}

TEST_F(BatchOptionsTest, ASummaryThatCannotBeWrittenStopsNoExport) {
  List({"a.nsf"});
  std::filesystem::create_directories(root_ + L"\\summary.csv");
  const ConsoleEnd end = Batch();
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.errors, "the summary cannot be written now; it is tried again"));
  EXPECT_TRUE(Holds(end.errors, "the summary cannot be written\n")) << end.errors;
  EXPECT_TRUE(std::filesystem::exists(FolderOf("a.nsf")));
  EXPECT_TRUE(Holds(ReadBytes(root_ + L"\\summary.html"), "<strong>Whole</strong>"));
}

TEST_F(BatchOptionsTest, AnAttemptWithoutAnOutcomeIsLeftAndANewOneMade) {
  List({"a.nsf"});
  std::filesystem::create_directories(FolderOf("a.nsf") + L".attempt-1\\data");
  EXPECT_EQ(Batch().code, 0u);
  EXPECT_TRUE(std::filesystem::exists(FolderOf("a.nsf") + L".attempt-1\\data"));
  EXPECT_TRUE(std::filesystem::exists(FolderOf("a.nsf") + L"\\outcome.json"));
}

// Whatever the export's own console dies of, the others go on.
TEST_F(BatchOptionsTest, AnExportWhoseConsoleDiesIsIncomplete) {
  const std::string slow = testing::FaultsMember(R"({"entry": "DXLExportNote", "wait": 1500})");
  run_.AddDatabase(L"b.nsf", testing::DocumentsJson(8, slow));
  List({"b.nsf", "a.nsf"});
  const auto process = Start(BatchWords({L"--json"}));
  process->AwaitOutput("\"phase\":\"documents\"");
  process->EndSupervisor(0xC0000409);
  const ConsoleEnd end = process->WaitForEnd();
  process->AwaitNothingLeft();
  EXPECT_EQ(end.code, 5u) << end.errors;
  EXPECT_EQ(States(),
            (std::map<std::string, std::string>{{"a.nsf", "whole"}, {"b.nsf", "incomplete"}}));
  EXPECT_TRUE(Holds(Summary().at("b.nsf").at("reason"), "ended with code C0000409"));
  EXPECT_EQ(Batch().code, 0u);
}

}  // namespace
}  // namespace larkspan::console
