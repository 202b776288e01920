// Databases whose documents are made on the fly.
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class GeneratedDatabases : public StandinTest {};

STATUS LARKSPAN_NOTES_CALL InsertMatch(void* context, SearchMatch* match, ItemTable*) {
  return IDInsert(*static_cast<DHANDLE*>(context), match->noteId, nullptr);
}

DWORD CountMatches(DHANDLE database) {
  DHANDLE table = 0;
  EXPECT_EQ(IDCreateTable(0, &table), 0);
  EXPECT_EQ(NSFSearchExtended3(database, 0, 0, 0, nullptr, 0x10, 0, 0, 0, 0, 0x7FFF, nullptr,
                               InsertMatch, &table, nullptr, 0),
            0);
  return IDEntries(table);
}

}  // namespace

TEST_F(GeneratedDatabases, FindEveryDocumentOnce) {
  EXPECT_EQ(CountMatches(OpenDatabase(R"({"generate": {"documents": 20000},
                                          "notes": [{"id": "11A", "class": "form"}],
                                          "deleted": [{"id": "11E"}]})")),
            20002U);
}

TEST_F(GeneratedDatabases, HoldAMillionDocumentsInASmallFile) {
  const DHANDLE database = OpenDatabase(R"({"generate": {"documents": 1000000}})");
  DHANDLE note = 0;
  EXPECT_EQ(NSFNoteOpen(database, 0x1000 + 4 * 999999, 0, &note), 0);
  EXPECT_EQ(NSFNoteOpen(database, 0x1000 + 4 * 1000000, 0, &note), 551);
  EXPECT_EQ(NSFNoteOpen(database, 0x1002, 0, &note), 551);
}

TEST_F(GeneratedDatabases, MakeDocumentsOfTheWantedSize) {
  OpenDatabase(R"({"generate": {"documents": 3, "firstId": "90A", "textBytes": 77}})");
  char text[256];
  EXPECT_EQ(NSFItemGetText(OpenNote(0x90A), "Remarks", text, sizeof text), 77);
}

TEST_F(GeneratedDatabases, MakeTheSameDocumentEachTime) {
  OpenDatabase(R"({"generate": {"documents": 3, "firstId": "90A"}})");
  const std::string first = Export(OpenNote(0x90E)).dxl;
  const std::string second = Export(OpenNote(0x90E)).dxl;
  EXPECT_EQ(first.substr(first.find("<noteinfo")), second.substr(second.find("<noteinfo")));
  EXPECT_NE(first.find("Seed lot 1 "), std::string::npos);
}

TEST_F(GeneratedDatabases, DoNotOpenWithASettingThatIsUnknownOrTooLarge) {
  Start();
  WriteFile("a.nsf", R"({"generate": {"documents": 3, "colour": "blue"}})");
  WriteFile("b.nsf", R"({"generate": {"documents": 4294967295}})");
  WriteFile("c.nsf", R"({"generate": {"documents": 3}, "notes": [{"id": "1004"}]})");
  DHANDLE database = 0;
  EXPECT_EQ(NSFDbOpen("a.nsf", &database), 554);
  EXPECT_EQ(NSFDbOpen("b.nsf", &database), 554);
  EXPECT_EQ(NSFDbOpen("c.nsf", &database), 554);
}

TEST_F(GeneratedDatabases, MakePicturesAndProfilesAsOftenAsWanted) {
  OpenDatabase(R"({"generate": {"documents": 4, "firstId": "90A", "richTextBytes": 10,
                                "pictureEvery": 2, "profileEvery": 3}})");
  EXPECT_EQ(Export(OpenNote(0x90A)).dxl.find("<picture>"), std::string::npos);
  EXPECT_NE(Export(OpenNote(0x90E)).dxl.find("<picture>"), std::string::npos);
  EXPECT_EQ(Export(OpenNote(0x90E)).dxl.find("$profile"), std::string::npos);
  EXPECT_NE(Export(OpenNote(0x912)).dxl.find("$profile_2"), std::string::npos);
}

}  // namespace larkspan::standin_test
