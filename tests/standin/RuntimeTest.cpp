// Start and end of the runtime, and which notes.ini it takes.
#include <thread>

#include "tests/standin/LoadedLibrary.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kNotFound = 0x1A5;

using StartFunction = STATUS(LARKSPAN_NOTES_CALL*)(int argc, char** argv);

STATUS StartWith(std::vector<std::string> arguments, int count,
                 StartFunction start = NotesInitExtended) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  return start(count, pointers.data());
}

class RuntimeStart : public StandinTest {
 protected:
  std::string Ini(const std::string& name) const {
    WriteFile(name, "Directory=.\nKeyFilename=" + name + ".id\n");
    WriteFile(name + ".id", R"({"name": ")" + name + R"(", "password": ""})");
    return "=" + (folder() / name).string();
  }

  // The start of a copy of the library that has the data folder to itself.
  STATUS StartCopy(const std::vector<std::string>& arguments, int count) const {
    const std::string name = LoadedLibrary::FileName();
    const auto original = std::filesystem::path(LARKSPAN_LIBRARIES) / name;
    std::filesystem::copy_file(original, folder() / name);
    const LoadedLibrary copy(folder());
    return StartWith(arguments, count,
                     reinterpret_cast<StartFunction>(copy.Address("NotesInitExtended")));
  }

  static std::string UserName() {
    char name[256] = {};
    EXPECT_EQ(SECKFMGetUserName(name), 0);
    return name;
  }
};

}  // namespace

TEST_F(RuntimeStart, TakesTheNamedIniFile) {
  EXPECT_EQ(StartWith({"program", Ini("a.ini")}, 2), 0);
  EXPECT_EQ(UserName(), "a.ini");
  NotesTerm();
}

TEST_F(RuntimeStart, TakesTheFirstOfSeveralThatIsNotEmpty) {
  EXPECT_EQ(StartWith({"program", "=", Ini("a.ini"), Ini("b.ini")}, 4), 0);
  EXPECT_EQ(UserName(), "a.ini");
}

TEST_F(RuntimeStart, NeverLooksBehindTheLastArgument) {
  EXPECT_EQ(StartCopy({"program", "other", Ini("a.ini")}, 2), kNotFound);
}

TEST_F(RuntimeStart, DoesNotTakeTheProgramForAnIniFile) {
  EXPECT_EQ(StartCopy({Ini("a.ini")}, 1), kNotFound);
}

TEST_F(RuntimeStart, FailsWithoutAnIniFile) {
  EXPECT_EQ(StartWith({"program", "=" + (folder() / "missing.ini").string()}, 2), kNotFound);
  EXPECT_EQ(StartCopy({"program", "="}, 2), kNotFound);
}

TEST_F(RuntimeStart, FindsTheIniFileBesideTheLibrary) {
  WriteFile("notes.ini", "Directory=.\n");
  EXPECT_EQ(StartCopy({"program"}, 1), 0);
}

TEST_F(RuntimeStart, CanFollowAnEnd) {
  Start();
  NotesTerm();
  Start();
  NotesTerm();
}

TEST_F(RuntimeStart, CanBeEndedByAnotherThread) {
  Start("StandinLedger=ledger.json\n");
  std::thread(NotesTerm).join();
  EXPECT_NE(ReadFile("ledger.json"), "");
  Start();
}

TEST_F(RuntimeStart, ReadsKeysInAnyLetterCaseAndWithAByteOrderMark) {
  WriteFile("imke.id", R"({"name": "CN=Imke", "password": ""})");
  WriteFile("n.ini", "\xEF\xBB\xBFkeyFILENAME = imke.id \r\n; no key\r\n");
  EXPECT_EQ(StartWith({"program", "=" + (folder() / "n.ini").string()}, 2), 0);
  EXPECT_EQ(UserName(), "CN=Imke");
}

TEST_F(RuntimeStart, WorksWithoutAnIdFile) {
  Start();
  EXPECT_EQ(UserName(), "CN=Larkspan Tester/O=Example");
}

TEST_F(RuntimeStart, FindsFoldersWithNonAsciiNames) {
  WriteFile("Gärten/Rosé/notes.nsf", "{}");
  WriteFile("notes2.ini", "Directory=Gärten\n");
  ASSERT_EQ(StartWith({"program", "=" + (folder() / "notes2.ini").string()}, 2), 0);
  DHANDLE database = 0;
  EXPECT_EQ(NSFDbOpen(ToNotes(std::string_view("Rosé/notes.nsf")).c_str(), &database), 0);
}

TEST_F(RuntimeStart, LetsAFaultPlanFailIt) {
  WriteFile("plan.json", R"([{"entry": "NotesInitExtended", "status": 422}])");
  EXPECT_EQ(TryStart("StandinFaults=plan.json\n"), 422);
}

TEST_F(RuntimeStart, StatusTextsCanBeReadAfterItFailed) {
  ASSERT_EQ(StartWith({"program", "=missing.ini"}, 2), kNotFound);
  char text[255];
  const WORD length = OSLoadString(0, kNotFound, text, sizeof text);
  EXPECT_EQ(std::string(text, length), "Unable to find the file notes.ini");
}

}  // namespace larkspan::standin_test
