// Start and end of the runtime, and which notes.ini it takes.
#include "standin/StandinHooks.h"
#include "tests/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kNotFound = 0x1A5;

STATUS StartWith(std::vector<std::string> arguments, int count) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  return NotesInitExtended(count, pointers.data());
}

class RuntimeStart : public StandinTest {
 protected:
  std::string Ini(const std::string& name) const {
    WriteFile(name, "Directory=.\nKeyFilename=" + name + ".id\n");
    WriteFile(name + ".id", R"({"name": ")" + name + R"(", "password": ""})");
    return "=" + (folder() / name).string();
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
  EXPECT_EQ(StartWith({"program", "other", Ini("a.ini")}, 2), kNotFound);
}

TEST_F(RuntimeStart, DoesNotTakeTheProgramForAnIniFile) {
  EXPECT_EQ(StartWith({Ini("a.ini")}, 1), kNotFound);
}

TEST_F(RuntimeStart, FailsWithoutAnIniFile) {
  EXPECT_EQ(StartWith({"program", "=" + (folder() / "missing.ini").string()}, 2), kNotFound);
  EXPECT_EQ(StartWith({"program"}, 1), kNotFound);
}

TEST_F(RuntimeStart, CanFollowAnEnd) {
  Start();
  NotesTerm();
  Start();
  NotesTerm();
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
  ASSERT_EQ(StartWith({"program"}, 1), kNotFound);
  char text[255];
  const WORD length = OSLoadString(0, kNotFound, text, sizeof text);
  EXPECT_EQ(std::string(text, length), "Unable to find the file notes.ini");
}

}  // namespace larkspan::standin_test
