// The databases of a server: every option, message and code.
#include <algorithm>
#include <filesystem>

#include "tests/console/system/ListingTest.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/LibraryThrows.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

constexpr char kGardenTable[] =
    "Path                Title                    Bytes  Data modified            "
    "Design modified          Identifier\n"
    "seeds\\exchange.nsf  Seed exchange          524,288  2020-05-06T07:08:09.10Z  "
    "2019-05-13T02:27:52.95Z  C12583D0004D1A2C\n"
    "bulbs.nsf           Bulbs on the server  1,310,720  2019-03-01T08:00:00.00Z  "
    "2019-02-28T08:00:00.00Z  C12583D0004D1A2B\n"
    "seeds                                       folder                           "
    "                         0000000000000000\n";

constexpr char kGardenCsv[] =
    "server,path,title,data_modified,design_modified,bytes,identifier,kind\r\n"
    "Garden,seeds\\exchange.nsf,Seed exchange,2020-05-06T07:08:09.10Z,2019-05-13T02:27:52.95Z,"
    "524288,C12583D0004D1A2C,database\r\n"
    "Garden,bulbs.nsf,Bulbs on the server,2019-03-01T08:00:00.00Z,2019-02-28T08:00:00.00Z,"
    "1310720,C12583D0004D1A2B,database\r\n"
    "Garden,seeds,,,,0,0000000000000000,folder\r\n";

// The programs that are started get this folder for their temporary files.
class OwnTemporaryFolder {
 public:
  explicit OwnTemporaryFolder(const std::wstring& path)
      : path_(path), earlier_(std::filesystem::temp_directory_path()) {
    std::filesystem::create_directory(path);
    SetEnvironmentVariableW(L"TMP", path.c_str());
  }
  ~OwnTemporaryFolder() { SetEnvironmentVariableW(L"TMP", earlier_.c_str()); }
  OwnTemporaryFolder(const OwnTemporaryFolder&) = delete;
  OwnTemporaryFolder& operator=(const OwnTemporaryFolder&) = delete;

  bool IsEmpty() const { return std::filesystem::is_empty(path_); }

  // The listing that somebody is at work on holds something.
  bool HoldsListing() const {
    const std::filesystem::recursive_directory_iterator entries(path_);
    return std::any_of(begin(entries), end(entries), [](const auto& entry) {
      return entry.path().filename() == L"scan.txt" && entry.file_size() > 0;
    });
  }

 private:
  std::filesystem::path path_;
  std::filesystem::path earlier_;
};

class DatabasesSystemTest : public ListingTest {
 protected:
  ConsoleEnd Garden(const Words& more = {}) const {
    Words words = {L"--server", L"Garden"};
    words.insert(words.end(), more.begin(), more.end());
    return Databases(words);
  }

  // Of the faulty program, whose files fail by this plan.
  ConsoleEnd GardenWithFaultyFiles(const wchar_t* plan) {
    UseExporter(L"larkspan_faulty.exe");
    const ScopedEnvironmentVariable variable(kFileFaultsVariable, plan);
    return Garden({L"--csv"});
  }

  ConsoleEnd GardenWithFault(const std::string& fault, const Words& more = {L"--csv"}) {
    run_.SetFaults("[{" + fault + "}]");
    return Garden(more);
  }
};

TEST_F(DatabasesSystemTest, AServerIsATable) {
  const ConsoleEnd end = Garden();
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(end.output, std::string(kGardenTable) + "\n2 databases and 1 folder\n");
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(DatabasesSystemTest, QuietIsTheListingAlone) {
  const ConsoleEnd end = Garden({L"--quiet"});
  EXPECT_EQ(end.output, kGardenTable);
  EXPECT_EQ(end.errors, "");
}

TEST_F(DatabasesSystemTest, CsvIsByteForByteAsExpected) {
  const ConsoleEnd end = Garden({L"--csv"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(end.output, kGardenCsv);
}

TEST_F(DatabasesSystemTest, JsonIsOneDocument) {
  const ConsoleEnd end = Garden({L"--json"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(end.output.ends_with("}\n"));
  const Json document = Json::parse(end.output);
  EXPECT_EQ(document.at("format"), "larkspan-databases");
  EXPECT_EQ(document.at("server"), "Garden");
  EXPECT_EQ(document.at("server_named"), "Garden");
  ASSERT_EQ(document.at("databases").size(), 3u);
  EXPECT_EQ(document.at("databases").at(1).at("bytes"), 1310720);
}

TEST_F(DatabasesSystemTest, WithoutAServerItIsThisMachine) {
  const ConsoleEnd end = Databases({L"--csv"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(Holds(end.output,
                    "\r\n,sample.nsf,Pflanzenregister / Plant Register,"
                    "2022-09-18T17:05:30.25Z,2021-03-04T09:08:07.06Z,6291456,"
                    "C12583D0004D1A2B,database\r\n"))
      << end.output;
  EXPECT_TRUE(Holds(end.output, "\r\n,swapped.nsf,,gestern fr\xC3\xBCh,4697254411347427328,2048,"));
  EXPECT_TRUE(Holds(end.output, ",1048576.5,0807060504030201,"));
  EXPECT_TRUE(Holds(end.output, ",-1.5,FEDCBA9876543210,"));
  EXPECT_EQ(Databases({L"--csv", L"--server", L"<Local>"}).output, end.output);
  EXPECT_EQ(Databases({L"--csv", L"--server", L""}).output, end.output);
}

TEST_F(DatabasesSystemTest, AServerWithOtherLettersHasNoNameOfTheLibrary) {
  const ConsoleEnd end = Databases({L"--server", L"Glash\u00e4user", L"--json"});
  EXPECT_EQ(end.code, 0u);
  const Json document = Json::parse(end.output);
  EXPECT_EQ(document.at("server"), "Glash\xC3\xA4user");
  EXPECT_TRUE(document.at("server_named").is_null());
}

TEST_F(DatabasesSystemTest, ToAFileItIsTheSameBytes) {
  WriteBytes(to_, "an earlier and much longer file\r\n" + std::string(5000, 'x'));
  const ConsoleEnd end = Garden({L"--csv", L"--to", to_});
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(ReadBytes(to_), kGardenCsv);
  EXPECT_FALSE(Exists(to_ + L".new"));
  EXPECT_TRUE(end.output.starts_with("2 databases and 1 folder in ")) << end.output;
  EXPECT_EQ(Garden({L"--to", to_, L"--quiet"}).output, "");
  EXPECT_EQ(ReadBytes(to_), kGardenTable);
  const std::string json = Garden({L"--json"}).output;
  EXPECT_EQ(Garden({L"--json", L"--to", to_}).code, 0u);
  EXPECT_EQ(ReadBytes(to_), json);
}

TEST_F(DatabasesSystemTest, APlaceThatCannotBeWrittenIsToldBeforeAnythingIsAsked) {
  ExpectRefused(Garden({L"--to", run_.folder() + L"\\none\\list.csv"}), 2,
                "the databases of 'Garden' cannot be listed: the folder of ");
  ExpectRefused(Garden({L"--to", run_.folder()}), 2, "' is a folder");
  EXPECT_EQ(run_.LedgerLines().size(), 0u);
}

TEST_F(DatabasesSystemTest, AFileThatSomebodyHoldsStays) {
  WriteBytes(to_, "earlier");
  const testing::UniqueSystemHandle held(
      CreateFileW(to_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ExpectRefused(Garden({L"--csv", L"--to", to_}), 2, "the listing cannot be written to '");
  EXPECT_EQ(ReadBytes(to_), "earlier");
  EXPECT_FALSE(Exists(to_ + L".new"));
}

TEST_F(DatabasesSystemTest, AServerThatIsNotThereIsToldInTheLibrarysWords) {
  WriteBytes(to_, "earlier");
  const ConsoleEnd end = Databases({L"--server", L"Nowhere", L"--csv", L"--to", to_});
  ExpectRefused(end, 2,
                "larkspan-console: the databases of 'Nowhere' cannot be listed: Error "
                "opening root directory (File does not exist)\n");
  EXPECT_EQ(ReadBytes(to_), "earlier");
}

TEST_F(DatabasesSystemTest, NoAccessIsToldInTheLibrarysWords) {
  ExpectRefused(GardenWithFault(R"("entry": "NSFDbOpen", "status": 582)"), 2,
                "the databases of 'Garden' cannot be listed: Error opening root directory (");
}

TEST_F(DatabasesSystemTest, ARuntimeThatDoesNotStartIsTold) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "status": "0x1A5"}])");
  ExpectRefused(Databases(), 2,
                "the databases of this machine cannot be listed: Notes initialization failed "
                "(1A5)\n");
}

TEST_F(DatabasesSystemTest, AMissingConfigurationIsTold) {
  ExpectRefused(Run({L"databases", L"--notes-ini", run_.folder() + L"\\none.ini"}), 2,
                "Notes initialization failed (1A5)");
}

TEST_F(DatabasesSystemTest, ThePasswordOfTheIdFileComesFromAFile) {
  const std::wstring password = run_.folder() + L"\\password.txt";
  WriteBytes(password, "p\xC3\xA2querette\r\n");
  const Words id = {L"--csv", L"--id-file", L"ids\\no\u00E9.id", L"--password-file", password};
  EXPECT_EQ(Garden(id).output, kGardenCsv);
  EXPECT_TRUE(Json::parse(run_.LedgerLines().at(0)).at("calls").contains("SECKFMSwitchToIDFile"));
  WriteBytes(password, "sesame");
  ExpectRefused(Garden(id), 2, "Unable to switch id (");
}

TEST_F(DatabasesSystemTest, ThePasswordComesFromTheEnvironmentOrStandardInput) {
  const Words id = {L"--csv", L"--id-file", L"ids\\no\u00E9.id"};
  {
    const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", L"p\u00E2querette");
    EXPECT_EQ(Garden(id).output, kGardenCsv);
  }
  Words words = ListingWords(L"databases", {L"--server", L"Garden", L"--password-stdin"});
  words.insert(words.end(), id.begin(), id.end());
  const auto process = Start(words);
  process->Write("p\xC3\xA2querette\n");
  EXPECT_EQ(process->WaitForEnd().output, kGardenCsv);
}

TEST_F(DatabasesSystemTest, AnIdFileNeedsAPassword) {
  ExpectRefused(Garden({L"--id-file", L"ids\\no\u00E9.id"}), 1, "--id-file needs a password");
}

TEST_F(DatabasesSystemTest, OptionsThatExcludeEachOtherAreRefused) {
  ExpectRefused(Garden({L"--csv", L"--json"}), 1, "--csv excludes --json");
  ExpectRefused(Garden({L"--to", L""}), 1, "--to");
  ExpectRefused(Garden({L"--sever", L"Mill"}), 1, "did you mean '--server'?");
  ExpectRefused(Databases({L"--server", L"=x"}), 1, "a value may not begin with '='");
  EXPECT_EQ(run_.LedgerLines().size(), 0u);
}

TEST_F(DatabasesSystemTest, HelpHasAnExample) {
  const ConsoleEnd end = Run({L"databases", L"--help"});
  EXPECT_EQ(end.code, 0u);
  for (const char* const word :
       {"--server", "--id-file", "--password-file", "--password-stdin", "--notes-ini", "--csv",
        "--json", "--to", "--quiet", "Example:\n  larkspan-console databases --server"})
    EXPECT_TRUE(Holds(end.output, word)) << word;
}

TEST_F(DatabasesSystemTest, ACrashAfterSomeLinesLeavesThemAndSaysSo) {
  const ConsoleEnd end =
      GardenWithFault(R"("entry": "NSFSearch", "matches": 2, "action": "accessViolation")");
  EXPECT_EQ(end.code, 5u);
  const std::string csv = kGardenCsv;
  EXPECT_EQ(end.output, csv.substr(0, csv.rfind("Garden,seeds,")));
  EXPECT_EQ(end.errors,
            "larkspan-console: the listing is not whole: The listing was ended by a crash; "
            "larkspan.exe ended with code 0xC0000005\n");
}

TEST_F(DatabasesSystemTest, WhatIsNotWholeIsWrittenIntoTheFileToo) {
  const ConsoleEnd end =
      GardenWithFault(R"("entry": "NSFSearch", "matches": 2, "action": "accessViolation")",
                      {L"--csv", L"--to", to_});
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(ReadBytes(to_), "bulbs.nsf"));
}

// A crash for lack of stack can end the process without a code.
TEST_F(DatabasesSystemTest, AThreadThatEndsLeavesNoWholeListing) {
  const ConsoleEnd end =
      GardenWithFault(R"("entry": "NSFSearch", "matches": 1, "action": "endThread")");
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.errors, "not whole: The listing was ended by a crash")) << end.errors;
}

TEST_F(DatabasesSystemTest, ACrashBeforeTheFirstDatabaseIsNoListing) {
  ExpectRefused(
      GardenWithFault(R"("entry": "NSFSearch", "matches": 0, "action": "accessViolation")"), 2,
      "cannot be listed: The listing was ended by a crash; larkspan.exe ended with code "
      "0xC0000005");
  ExpectRefused(GardenWithFault(R"("entry": "NSFDbOpen", "action": "exit", "code": 7)"), 2,
                "cannot be listed: larkspan.exe ended with code 7");
}

TEST_F(DatabasesSystemTest, ATextThatIsTooLongIsTold) {
  const ConsoleEnd end = Databases({L"--server", L"Overlong"});
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.output, "well.nsf"));
  EXPECT_TRUE(Holds(end.output, "1 database and 0 folders\n"));
  EXPECT_TRUE(Holds(end.errors, "larkspan.exe ended with code 0xC0000409")) << end.errors;
}

TEST_F(DatabasesSystemTest, AWarningChangesNoCode) {
  if (!testing::kLibraryThrowsIntoProgram) GTEST_SKIP() << "the library ends the process itself";
  const ConsoleEnd end = GardenWithFault(R"("entry": "NotesTerm", "action": "throw")");
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(end.output, kGardenCsv);
  EXPECT_EQ(end.errors,
            "larkspan-console: larkspan.exe warns: The end of the Notes runtime was ended by an "
            "exception\n");
}

// Nothing says of a process that did not end by itself that all of its lines were written.
TEST_F(DatabasesSystemTest, AnEndThatIsACrashIsNotCalledWhole) {
  const ConsoleEnd end =
      GardenWithFault(R"("entry": "NotesTerm", "action": "exception", "code": "0xE06D7363")");
  EXPECT_EQ(end.code, 5u);
  EXPECT_EQ(end.output, kGardenCsv);
  EXPECT_TRUE(Holds(end.errors, "not whole: larkspan.exe ended with code 0xE06D7363"))
      << end.errors;
}

TEST_F(DatabasesSystemTest, WithoutTheExporterItCouldNotRun) {
  UseExporter(L"");
  ExpectRefused(Garden(), 2, "larkspan.exe' could not be started (error 2)");
}

TEST_F(DatabasesSystemTest, AListingThatCannotBeBegunIsTold) {
  ExpectRefused(GardenWithFaultyFiles(L"open scan.txt 1 accessDenied"), 2,
                "cannot be listed: Unable to open output file");
}

TEST_F(DatabasesSystemTest, AMissingListingIsToldWithoutALogToo) {
  ExpectRefused(GardenWithFaultyFiles(L"open scan.txt 1 accessDenied; open log.txt * accessDenied"),
                2, "cannot be listed: larkspan.exe has written no scan.txt");
}

// The disk was full in the middle of the second database.
TEST_F(DatabasesSystemTest, ALineThatIsCutOffIsTold) {
  const ConsoleEnd end = GardenWithFaultyFiles(L"write scan.txt 3 diskFull 12");
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.output, "exchange.nsf"));
  EXPECT_FALSE(Holds(end.output, "bulbs"));
  EXPECT_TRUE(Holds(end.errors, "Line 3 of scan.txt is not whole: 'bulbs.nsf?Bu'")) << end.errors;
  EXPECT_TRUE(Holds(end.errors, "the listing is not whole: Unable to write output file"))
      << end.errors;
}

TEST_F(DatabasesSystemTest, ALineOfAnotherFormIsToldAndTheOthersAreShown) {
  const std::wstring folder = run_.folder() + L"\\data";
  std::filesystem::create_directories(folder + L"\\servers\\Odd");
  WriteBytes(folder + L"\\servers\\Odd\\directory.json",
             R"({"entries": [{"items": {"$Path": {"text": "a\tb.nsf"}}},
                             {"items": {"$Path": {"text": "c.nsf"}}}]})");
  run_.SetDataFolder(folder);
  const ConsoleEnd end = Databases({L"--server", L"Odd", L"--csv"});
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.output, "Odd,c.nsf,,,,0,0000000000000000,database\r\n")) << end.output;
  EXPECT_TRUE(Holds(end.errors, " of scan.txt does not have six fields: 'a")) << end.errors;
  EXPECT_TRUE(Holds(end.errors, "the listing is not whole: 1 line is damaged")) << end.errors;
}

TEST_F(DatabasesSystemTest, AnEmptyDirectoryIsAListingOfNothing) {
  const std::wstring folder = run_.folder() + L"\\data";
  std::filesystem::create_directories(folder + L"\\servers\\Empty");
  WriteBytes(folder + L"\\servers\\Empty\\directory.json", R"({"entries": []})");
  run_.SetDataFolder(folder);
  const ConsoleEnd end = Databases({L"--server", L"Empty"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(Holds(end.output, "0 databases and 0 folders\n")) << end.output;
}

TEST_F(DatabasesSystemTest, AnOutputThatNobodyReadsIsTold) {
  run_.SetFaults(R"([{"entry": "NSFSearch", "matches": 1, "wait": 5000}])");
  const auto process = Start(ListingWords(L"databases", {L"--server", L"Garden", L"--csv"}));
  process->BreakOutput();
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 2u);
  EXPECT_EQ(end.errors,
            "larkspan-console: standard output takes no more; the listing is not whole there\n");
}

TEST_F(DatabasesSystemTest, AConsoleThatIsEndedByForceLeavesNothingAtWork) {
  const OwnTemporaryFolder temporary(run_.folder() + L"\\temp");
  run_.SetFaults(R"([{"entry": "NSFSearch", "matches": 1, "action": "hang"}])");
  const auto process = Start(ListingWords(L"databases", {L"--server", L"Garden"}));
  EXPECT_TRUE(AwaitCondition([&] { return temporary.HoldsListing(); }));
  EXPECT_EQ(process->Processes().size(), 2u);
  process->EndByForce();
  process->AwaitNothingLeft();
}

TEST_F(DatabasesSystemTest, NothingStaysInTheTemporaryFolder) {
  const OwnTemporaryFolder temporary(run_.folder() + L"\\temp");
  EXPECT_EQ(Garden().code, 0u);
  EXPECT_TRUE(temporary.IsEmpty());
  EXPECT_EQ(
      GardenWithFault(R"("entry": "NSFSearch", "matches": 1, "action": "accessViolation")").code,
      5u);
  EXPECT_TRUE(temporary.IsEmpty());
}

}  // namespace
}  // namespace larkspan::console
