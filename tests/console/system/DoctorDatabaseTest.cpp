// What doctor says of a database, of the user, and of the folder that its export is to go into.
#include <filesystem>

#include "tests/console/system/DoctorTest.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;

const Lines kBehindTheDatabase = {"size", "list", "notes"};

class DoctorDatabaseTest : public DoctorTest {
 protected:
  void AddDocuments(int count, const std::string& fault = "") {
    run_.AddDatabase(database_, DocumentsJson(count, fault.empty() ? "" : FaultsMember(fault)));
  }
};

TEST_F(DoctorDatabaseTest, ADatabaseThatCanBeExportedPasses) {
  Doctor({L"--path", L"sample.nsf", L"--out", out_});
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Detail("database"), "sample.nsf opens");
  EXPECT_EQ(Detail("size"), "6.0 MB (6,291,456 bytes)");
  EXPECT_EQ(Detail("list"), "55 notes");
  EXPECT_EQ(Detail("notes"), "5 of 5 notes exported");
  EXPECT_TRUE(Detail("folder").ends_with(" can be written to")) << Detail("folder");
  EXPECT_TRUE(Detail("space").ends_with(" free, and the database has 6.0 MB")) << Detail("space");
  EXPECT_TRUE(Holds(Detail("paths"), "the system takes 259 at most")) << Detail("paths");
  for (const char* name : {"database", "size", "list", "notes", "folder", "space", "paths"}) {
    EXPECT_EQ(Result(name), "passed") << name;
  }
}

TEST_F(DoctorDatabaseTest, OneOfAServerIsNamedWithIt) {
  Doctor({L"--server", L"Garden", L"--path", L"bulbs.nsf"});
  EXPECT_EQ(Detail("database"), "Garden!!bulbs.nsf opens");
  EXPECT_EQ(Result("notes"), "passed");
}

// A busy machine takes its time to hand on that the first run is to stop before its notes.
TEST_F(DoctorDatabaseTest, NoNoteIsReadButTheHandful) {
  AddDocuments(9);
  run_.SetFaults(R"([{"entry": "NSFSearchExtended3", "wait": 5000}])");
  Doctor({L"--path", database_});
  EXPECT_EQ(Detail("list"), "9 notes");
  EXPECT_EQ(Detail("notes"), "5 of 5 notes exported");
  int opened = 0;
  for (const std::string& line : run_.LedgerLines()) {
    opened += Json::parse(line).at("calls").value("NSFNoteOpen", 0);
  }
  EXPECT_EQ(opened, 5);
}

TEST_F(DoctorDatabaseTest, ASizeThatTheLibraryDoesNotTellIsAWarning) {
  run_.AddDatabase(database_, DocumentsJson(2, R"("quota": "unavailable",)"));
  Doctor({L"--path", database_, L"--out", out_});
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Result("size"), "warning");
  EXPECT_TRUE(Holds(Detail("size"), "Unable to read database quota")) << Detail("size");
  EXPECT_EQ(Result("list"), "passed");
  EXPECT_TRUE(Holds(Detail("space"), "no size of a database to hold it against"));
}

TEST_F(DoctorDatabaseTest, OneThatIsNotThereFails) {
  Doctor({L"--path", L"none.nsf"});
  ExpectFailed("database", "none.nsf: Error opening database (File does not exist)",
               kBehindTheDatabase);
}

TEST_F(DoctorDatabaseTest, OneThatOnlyAdministratorsMayOpenFailsWithoutFullAccess) {
  Doctor({L"--path", L"locked.nsf"});
  ExpectFailed("database", "You are not authorized to open the database", kBehindTheDatabase);
  EXPECT_TRUE(Holds(Advice("database"), "--full-access")) << Advice("database");
  Doctor({L"--path", L"locked.nsf", L"--full-access"});
  EXPECT_EQ(code_, 0u) << output_;
}

TEST_F(DoctorDatabaseTest, ACrashWhileItIsOpenedIsAFinding) {
  run_.SetFaults(R"([{"entry": "NSFDbOpen", "path": "sample.nsf", "action": "accessViolation"}])");
  Doctor({L"--path", L"sample.nsf"});
  ExpectFailed("database", "(C0000005, an access violation)", kBehindTheDatabase);
}

TEST_F(DoctorDatabaseTest, ANoteThatCrashesTheLibraryIsNamed) {
  Doctor({L"--path", L"crash-first.nsf"});
  ExpectFailed("notes", "4 of 5 notes exported; 00000902: the library crashed at it", {});
}

TEST_F(DoctorDatabaseTest, NotesThatAllCrashTheLibraryAreAllNamed) {
  Doctor({L"--path", L"crash-all.nsf"});
  ExpectFailed("notes",
               "0 of 5 notes exported; 00000902: the library crashed at it; 00000906: ", {});
}

TEST_F(DoctorDatabaseTest, ANoteAtWhichTheLibraryHangsIsNamed) {
  AddDocuments(3, R"({"entry": "DXLExportNote", "note": "00000906", "action": "hang"})");
  Doctor({L"--path", database_, L"--timeout", L"6s"});
  ExpectFailed("notes", "2 of 3 notes exported; 00000906: the library hung at it", {});
}

TEST_F(DoctorDatabaseTest, ANoteThatIsDamagedIsAWarningWithItsCause) {
  AddDocuments(3, R"({"entry": "DXLExportNote", "note": "00000906", "status": 1175})");
  Doctor({L"--path", database_});
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Result("notes"), "warning");
  EXPECT_TRUE(Holds(Detail("notes"), "00000906: ")) << Detail("notes");
}

TEST_F(DoctorDatabaseTest, NotesOfWhichNoneIsExportedFail) {
  AddDocuments(2, R"({"entry": "NSFNoteOpen", "status": 515})");
  Doctor({L"--path", database_});
  ExpectFailed("notes", "0 of 2 notes exported; 00000902: ", {});
}

TEST_F(DoctorDatabaseTest, AnEmptyDatabaseHasNoNotesToTry) {
  run_.AddDatabase(database_, "{}");
  Doctor({L"--path", database_});
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Detail("list"), "0 notes");
  EXPECT_EQ(Result("notes"), "not tried");
  EXPECT_EQ(Detail("notes"), "the database lists no notes");
}

TEST_F(DoctorDatabaseTest, ASearchThatHangsIsEnded) {
  AddDocuments(2, R"({"entry": "NSFSearchExtended3", "action": "hang"})");
  Doctor({L"--path", database_, L"--timeout", L"6s"});
  ExpectFailed("list", "larkspan.exe gave no sign for 6 s and was ended", {"notes"});
  EXPECT_EQ(Result("database"), "passed");
  EXPECT_EQ(Result("size"), "passed");
}

TEST_F(DoctorDatabaseTest, ASearchThatFailsIsToldInTheWordsOfTheLog) {
  AddDocuments(2, R"({"entry": "NSFSearchExtended3", "status": 553})");
  Doctor({L"--path", database_});
  ExpectFailed("list", "Error retrieving notes (Notes error 553)", {"notes"});
}

TEST_F(DoctorDatabaseTest, AnAccessControlListThatFailsIsAWarning) {
  AddDocuments(2, R"({"entry": "DXLExportACL", "status": 585})");
  Doctor({L"--path", database_});
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Result("list"), "warning");
  EXPECT_EQ(Detail("list"), "2 notes; Error exporting ACL (Notes error 585)");
}

TEST_F(DoctorDatabaseTest, TheUserIsThatOfTheIdFile) {
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", L"Rittersporn");
  Doctor({L"--id-file", L"ids\\imke.id"});
  EXPECT_EQ(Detail("user"), "CN=Imke Sommer/O=Garten");
  EXPECT_FALSE(Holds(output_, "Rittersporn"));
}

TEST_F(DoctorDatabaseTest, AWrongPasswordFails) {
  const std::wstring file = run_.folder() + L"\\password.txt";
  WriteBytes(file, "Ritter\n");
  Doctor({L"--id-file", L"ids\\imke.id", L"--password-file", file, L"--path", L"sample.nsf"});
  ExpectFailed("user", "Unable to switch ID (Wrong password)", {"database"});
  EXPECT_EQ(Result("runtime"), "passed");
  EXPECT_FALSE(Holds(output_, "Ritter"));
}

TEST_F(DoctorDatabaseTest, APasswordComesFromStandardInputToo) {
  const auto process = Start(DoctorWords({L"--id-file", L"ids\\imke.id", L"--password-stdin"}));
  process->Write("Rittersporn\n");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_TRUE(Holds(end.output, "CN=Imke Sommer/O=Garten")) << end.output;
}

TEST_F(DoctorDatabaseTest, AnIdFileWithoutItsPasswordIsRefused) {
  const auto process = Start(DoctorWords({L"--id-file", L"ids\\imke.id", L"--password-stdin"}));
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 1u);
  EXPECT_EQ(end.output, "");
}

TEST_F(DoctorDatabaseTest, AFolderThatCannotBeWrittenToFails) {
  Doctor({L"--out", L"Z:\\proc\\orders"});
  ExpectFailed("folder", "Z:\\proc cannot be written to", {"space"});
  EXPECT_EQ(Result("paths"), "passed");
}

TEST_F(DoctorDatabaseTest, AFolderThatIsNotEmptyFails) {
  Doctor({L"--out", run_.folder()});
  ExpectFailed("folder", " is not empty", {"space"});
}

TEST_F(DoctorDatabaseTest, LessRoomThanTheDatabaseTakesFails) {
  run_.AddDatabase(database_, R"({"sizeKilobytes": 4294967295})");
  Doctor({L"--path", database_, L"--out", out_});
  ExpectFailed("space", " free, and the database has 4.0 TB", {});
}

TEST_F(DoctorDatabaseTest, AFolderWithALongPathFails) {
  Doctor({L"--out", L"C:\\" + std::wstring(240, L'a')});
  ExpectFailed("paths", "paths of up to 266 characters; the system takes 259 at most", {});
}

}  // namespace
}  // namespace larkspan::console
