#include "export/DatabaseAudit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "notes/Database.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

class DatabaseAuditTest : public NotesFixture {
 protected:
  DatabaseAuditTest() {
    WriteDatabase(R"({"sizeKilobytes": 6144})");
    WriteData(L"unknown.nsf", R"({"quota": "unavailable"})");
    WriteData(L"servers/Garden/bulbs.nsf", "{}");
    WriteData(L"servers/Glash\u00E4user/Gr\u00FCn.nsf", "{}");
    Start();
  }

  // The lines that tell of the database with this path, in the Notes character set.
  Lines LinesFor(const std::string& path) {
    Database database;
    EXPECT_TRUE(OpenDatabase(path, database).ok());
    AuditDatabase(database);
    return AuditLines();
  }

  Lines AuditLines() const { return ReadLines(PathOf(L"audit.txt")); }
};

TEST_F(DatabaseAuditTest, ServerAndPathAreTold) {
  EXPECT_EQ(LinesFor("Garden!!bulbs.nsf"),
            (Lines{"Archive database server: Garden", "Archive database path  : bulbs.nsf",
                   "Archive without full access admin"}));
}

TEST_F(DatabaseAuditTest, LocalDatabaseHasAnEmptyServer) {
  EXPECT_EQ(LinesFor("test.nsf"),
            (Lines{"Archive database server: ", "Archive database path  : test.nsf",
                   "Archive without full access admin"}));
}

TEST_F(DatabaseAuditTest, NamesOutsideAsciiAreUtf8) {
  EXPECT_EQ(LinesFor("Glash\x01\xE4user!!Gr\x01\xFCn.nsf"),
            (Lines{"Archive database server: Glash\u00E4user",
                   "Archive database path  : Gr\u00FCn.nsf", "Archive without full access admin"}));
}

TEST_F(DatabaseAuditTest, FullAccessIsTold) {
  ChangeSettings([](Settings& settings) { settings.fullAccess = true; });
  EXPECT_EQ(LinesFor("test.nsf").back(), "Archive with full access admin");
}

TEST_F(DatabaseAuditTest, NameOf255CharactersIsWhole) {
  const std::string path = std::string(247, '/').replace(0, 1, ".") + "test.nsf";
  EXPECT_EQ(LinesFor(path)[1], "Archive database path  : " + path);
}

TEST_F(DatabaseAuditTest, SizeBeforeIsInBytes) {
  AuditSizeBefore("test.nsf");
  EXPECT_EQ(AuditLines(), Lines{"Database size before archive: 6291456"});
}

TEST_F(DatabaseAuditTest, SizeAfterIsAlignedWithTheSizeBefore) {
  AuditSizeAfter("test.nsf");
  EXPECT_EQ(AuditLines(), Lines{"Database size after archive : 6291456"});
}

TEST_F(DatabaseAuditTest, SizeOfMoreThan32BitsIsWhole) {
  WriteData(L"large.nsf", R"({"sizeKilobytes": 4294967295})");
  AuditSizeBefore("large.nsf");
  EXPECT_EQ(AuditLines(), Lines{"Database size before archive: 4398046510080"});
}

TEST_F(DatabaseAuditTest, SizeBeforeThatIsNotToldIsUnavailable) {
  AuditSizeBefore("unknown.nsf");
  EXPECT_EQ(AuditLines(), Lines{"Database size before archive: unavailable"});
}

TEST_F(DatabaseAuditTest, SizeAfterThatIsNotToldIsUnavailable) {
  AuditSizeAfter("unknown.nsf");
  EXPECT_EQ(AuditLines(), Lines{"Database size after archive : unavailable"});
}

TEST_F(DatabaseAuditTest, SizeThatIsNotToldIsAWarning) {
  AuditSizeBefore("unknown.nsf");
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Unable to read database quota "
                              "(Database has no quota information)"});
}

TEST_F(DatabaseAuditTest, SizeThatIsToldIsNotLogged) {
  AuditSizeBefore("test.nsf");
  EXPECT_EQ(LogLines(), Lines());
}

// What the library says of the length of every translation into UTF-16.
notes_api::WORD translatedBytes = 0;

notes_api::WORD LARKSPAN_NOTES_CALL TranslateTo(notes_api::WORD, const char*, notes_api::WORD,
                                                char* out, notes_api::WORD size) {
  const notes_api::WORD written = std::min(translatedBytes, size);
  for (int i = 0; i < written; ++i) out[i] = i % 2 == 0 ? 'a' : '\0';
  return written;
}

class AuditBoundTest : public DatabaseAuditTest {
 protected:
  static void AuditWithTranslationOf(notes_api::WORD bytes) {
    const Database database = OpenTestDatabase();
    translatedBytes = bytes;
    const ReplacedEntryPoint replaced("OSTranslate", TranslateTo);
    AuditDatabase(database);
  }
};

TEST_F(AuditBoundTest, TranslationOf512BytesIsWhole) {
  AuditWithTranslationOf(512);
  EXPECT_EQ(AuditLines()[1], "Archive database path  : " + std::string(256, 'a'));
}

TEST_F(AuditBoundTest, TranslationOf514BytesEndsTheProcess) {
  EXPECT_EXIT(AuditWithTranslationOf(514), testing::ExitedWithCode(static_cast<int>(0xC0000409)),
              "");
}

}  // namespace
}  // namespace larkspan
