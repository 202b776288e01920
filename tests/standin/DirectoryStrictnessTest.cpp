// Ways of using directories, address books and their like that end the process.
#include "tests/standin/DirectorySearching.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

STATUS LARKSPAN_NOTES_CALL Ignore(void*, SearchMatch*, ItemTable*) { return 0; }

// The arguments of a search that is well, for a test to spoil one.
struct SearchArguments {
  DHANDLE handle = 0;
  DHANDLE formula = 0;
  char* viewTitle = nullptr;
  WORD flags = 0x0006;
  WORD classMask = 0x200A;
  TIMEDATE* since = nullptr;
  SearchCallback callback = Ignore;
  TIMEDATE* until = nullptr;
};

class DirectoryStrictnessDeathTest : public StandinTest {
 protected:
  DirectoryStrictnessDeathTest() : database_(OpenDatabase("{}")) {
    EXPECT_EQ(OpenDirectory("", &directory_), 0);
  }

  SearchArguments Well() const {
    SearchArguments well;
    well.handle = directory_;
    return well;
  }

  static STATUS Search(const SearchArguments& with) {
    return NSFSearch(with.handle, with.formula, with.viewTitle, with.flags, with.classMask,
                     with.since, with.callback, nullptr, with.until);
  }

  DHANDLE database_;
  DHANDLE directory_ = 0;
};

}  // namespace

TEST_F(DirectoryStrictnessDeathTest, OneWayOfSearchingIsKnown) {
  EXPECT_EQ(Search(Well()), 0);
  char text[] = "title";
  TIMEDATE time = {};
  SearchArguments formula = Well(), title = Well(), since = Well(), until = Well();
  formula.formula = 1;
  title.viewTitle = text;
  since.since = until.until = &time;
  for (const SearchArguments& with : {formula, title, since, until}) {
    EXPECT_STRICT(Search(with), "NSFSearch: directories are searched without");
  }
  SearchArguments flags = Well(), classMask = Well(), callback = Well();
  flags.flags = 0x0004;
  EXPECT_STRICT(Search(flags), "unknown search flags");
  classMask.classMask = 0x7FFF;
  EXPECT_STRICT(Search(classMask), "unknown class mask");
  callback.callback = nullptr;
  EXPECT_STRICT(Search(callback), "there is no callback");
}

TEST_F(DirectoryStrictnessDeathTest, OnlyOpenDirectoriesAreSearched) {
  SearchArguments database = Well(), closed = Well();
  database.handle = database_;
  EXPECT_STRICT(Search(database), "not that of a directory");
  NSFDbClose(directory_);
  EXPECT_STRICT(Search(closed), "a database handle that was closed already");
}

TEST_F(DirectoryStrictnessDeathTest, DirectoriesAreNoDatabases) {
  ReplicaInfo replica = {};
  DatabaseId id = {};
  char info[128] = {};
  TIMEDATE time = {};
  DHANDLE handle = 0;
  HCOLLECTION collection = 0;
  EXPECT_STRICT(NSFDbReplicaInfoGet(directory_, &replica), "the handle is that of a directory");
  EXPECT_STRICT(NSFDbIDGet(directory_, &id), "of a directory");
  EXPECT_STRICT(NSFDbInfoGet(directory_, info), "of a directory");
  EXPECT_STRICT(NSFDbModifiedTime(directory_, &time, &time), "of a directory");
  EXPECT_STRICT(NSFDbGetModifiedNoteTable(directory_, 1, time, &time, &handle), "of a directory");
  EXPECT_STRICT(NSFNoteOpen(directory_, 4, 0, &handle), "of a directory");
  EXPECT_STRICT(NSFSearchExtended3(directory_, 0, 0, 0, nullptr, 0, 0, 0, 0, 0, 0x7FFF, nullptr,
                                   Ignore, nullptr, nullptr, 0),
                "of a directory");
  EXPECT_STRICT(NIFOpenCollection(directory_, database_, 4, 0, 0, &collection, nullptr, nullptr,
                                  nullptr, nullptr),
                "of a directory");
  EXPECT_STRICT(NIFOpenCollection(database_, directory_, 4, 0, 0, &collection, nullptr, nullptr,
                                  nullptr, nullptr),
                "of a directory");
  EXPECT_STRICT(NIFPurgeCollection(database_, directory_, 4), "of a directory");
}

TEST_F(DirectoryStrictnessDeathTest, VariablesHaveANameAndAPlace) {
  char out[8];
  EXPECT_STRICT(OSGetEnvironmentString(nullptr, out, 7), "a text is missing");
  EXPECT_STRICT(OSGetEnvironmentString("Directory", nullptr, 7), "no place for the text");
}

TEST_F(DirectoryStrictnessDeathTest, NamesAreAbbreviatedPlainly) {
  char out[8];
  WORD length = 0;
  EXPECT_STRICT(DNAbbreviate(1, nullptr, "CN=A", out, 7, &length), "reserved argument");
  EXPECT_STRICT(DNAbbreviate(0, "*/O=B", "CN=A", out, 7, &length), "reserved argument");
  EXPECT_STRICT(DNAbbreviate(0, nullptr, nullptr, out, 7, &length), "a text is missing");
  EXPECT_STRICT(DNAbbreviate(0, nullptr, "CN=A", nullptr, 7, &length), "no place for the text");
}

}  // namespace larkspan::standin_test
