// The databases of the sample folder do what they are there for.
#include <set>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

struct FoundNotes {
  std::vector<NOTEID> live;
  std::size_t stubs = 0;
};

STATUS LARKSPAN_NOTES_CALL RememberNote(void* context, SearchMatch* match, ItemTable*) {
  auto* const found = static_cast<FoundNotes*>(context);
  if ((match->noteClass & 0x8000) != 0) {
    ++found->stubs;
  } else {
    found->live.push_back(match->noteId);
  }
  return 0;
}

FoundNotes Search(DHANDLE database, WORD classMask) {
  FoundNotes found;
  EXPECT_EQ(NSFSearchExtended3(database, 0, 0, 0, nullptr, 0x10, 0, 0, 0, 0, classMask, nullptr,
                               RememberNote, &found, nullptr, 0),
            0);
  return found;
}

class Samples : public StandinTest {
 protected:
  Samples() { StartWithSamples(); }

  static DHANDLE Open(const std::string& path) {
    DHANDLE database = 0;
    EXPECT_EQ(NSFDbOpen(ToNotes(std::string_view(path)).c_str(), &database), 0) << path;
    return database;
  }

  static void ExportAll(DHANDLE database) {
    for (const NOTEID id : Search(database, 0x7FFF).live) {
      DHANDLE note = 0;
      ASSERT_EQ(NSFNoteOpen(database, id, 0, &note), 0);
      const Exported exported = Export(note);
      EXPECT_EQ(exported.status, 0) << id;
      EXPECT_NE(exported.dxl.find("<noteinfo"), std::string::npos);
      EXPECT_EQ(NSFNoteClose(note), 0);
    }
  }
};

}  // namespace

TEST_F(Samples, PlantRegisterHasDozensOfNotesAndSomeStubs) {
  const FoundNotes all = Search(Open("sample.nsf"), 0x7FFF);
  EXPECT_EQ(all.live.size(), 55U);
  EXPECT_EQ(all.stubs, 4U);
}

TEST_F(Samples, PlantRegisterExportsWhole) {
  const DHANDLE database = Open("sample.nsf");
  ExportAll(database);
  EXPECT_EQ(NSFDbClose(database), 0);
  EXPECT_EQ(StandinOpenCount(), 0U);
}

TEST_F(Samples, PlantRegisterTellsWhatItIs) {
  const DHANDLE database = Open("sample.nsf");
  char info[128], categories[128];
  EXPECT_EQ(NSFDbInfoGet(database, info), 0);
  NSFDbInfoParse(info, kInfoCategories, categories, 127);
  EXPECT_STREQ(categories, "Botanik; Garten & Park");
  DWORD allocated = 0, free = 0, granule = 0;
  EXPECT_EQ(NSFDbSpaceUsageScaled(database, &allocated, &free, &granule), 0);
  EXPECT_EQ(allocated / 1024 * granule, 6144U);
  EXPECT_LT(free, allocated);
  TIMEDATE data = {}, other = {};
  EXPECT_EQ(NSFDbModifiedTime(database, &data, &other), 0);
  EXPECT_NE(data.innards[1], other.innards[1]);
}

TEST_F(Samples, DatabasesOnServersOpenByNetworkPath) {
  Open("Garden!!bulbs.nsf");
  Open("Glashäuser!!Österliche Beete.nsf");
}

TEST_F(Samples, EmptyDatabaseHasNothing) {
  const FoundNotes all = Search(Open("empty.nsf"), 0x7FFF);
  EXPECT_TRUE(all.live.empty());
  EXPECT_EQ(all.stubs, 0U);
}

TEST_F(Samples, BigDatabaseHasAHundredThousandDocuments) {
  const FoundNotes all = Search(Open("big.nsf"), 0x7FFF);
  EXPECT_EQ(std::set<NOTEID>(all.live.begin(), all.live.end()).size(), 100000U);
}

TEST_F(Samples, LockedDatabaseOpensOnlyForFullAccess) {
  DHANDLE database = 0;
  EXPECT_EQ(NSFDbOpen("locked.nsf", &database), 582);
  const DHANDLE names = MakeNamesList("CN=Larkspan Tester/O=Example", 7);
  EXPECT_EQ(NSFDbOpenExtended("locked.nsf", 0, names, nullptr, &database, nullptr, nullptr), 0);
}

TEST_F(Samples, EveryOtherDatabaseOpens) {
  for (const char* name :
       {"damaged.nsf", "designfail-6967.nsf", "designfail-6968.nsf", "sealed.nsf", "big-view.nsf",
        "damaged-views.nsf", "crash-first.nsf", "crash-middle.nsf", "crash-last.nsf",
        "crash-two.nsf", "crash-all.nsf"}) {
    Open(name);
  }
}

}  // namespace larkspan::standin_test
