#include "dxl/DatabaseProperties.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "notes/Database.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::STATUS;

void* expandedPath = nullptr;

notes_api::STATUS LARKSPAN_NOTES_CALL TellLongestPath(notes_api::DHANDLE, char* path,
                                                      char* expanded) {
  std::memset(path, 'x', 1023);
  path[1023] = '\0';
  expandedPath = expanded;
  return 0;
}

void LARKSPAN_NOTES_CALL TellLongestField(const char*, notes_api::WORD, char* out,
                                          notes_api::WORD limit) {
  std::memset(out, 'x', limit);
  out[limit] = '\0';
}

class DatabasePropertiesTest : public NotesFixture {
 protected:
  // Exports a database with these keys in JSON.
  Status Export(const std::string& keys) {
    WriteDatabase("{" + keys + "}");
    Start();
    return ExportDatabaseProperties(OpenTestDatabase());
  }

  std::string Exported(const std::string& keys) {
    EXPECT_TRUE(Export(keys).ok());
    return ReadBytes(PathOf(L"db.dxl"));
  }

  // The value of an attribute of the exported document, or "none".
  std::string Attribute(const std::string& name, const std::string& keys) {
    const std::string document = Exported(keys);
    const std::string before = " " + name + "=\"";
    const std::size_t at = document.find(before);
    if (at == std::string::npos) return "none";
    const std::size_t begin = at + before.size();
    return document.substr(begin, document.find('"', begin) - begin);
  }
};

TEST_F(DatabasePropertiesTest, DocumentIsWrittenByteForByte) {
  EXPECT_EQ(Exported(R"("title": "Herbs", "categories": "Garden", "replicaId": "C12583D0004D1A2B",
                         "databaseId": "C125800A00FFE001", "dataModified": "2024-01-31T14:30:05.27Z",
                         "designModified": "2023-12-01T00:00:00Z",
                         "space": {"allocatedGranules": 102400, "freeGranules": 51200,
                                   "granuleBytes": 1024})"),
            std::string("<?xml version='1.0' encoding='utf-8'?>\r\n"
                        "<!DOCTYPE database><database xmlns=\"") +
                notes_api::kDxlNamespace +
                "\" version=\"12.0\" replicaid=\"C12583D0004D1A2B\" path=\"test.nsf\" "
                "title=\"Herbs\" categories=\"Garden\">\r\n"
                "    <databaseinfo dbid=\"C125800A00FFE001\" diskspace=\"104857600\" "
                "percentused=\"50\">\r\n"
                "        <datamodified>\r\n"
                "            <datetime>20240131T143005,27+00</datetime>\r\n"
                "        </datamodified>\r\n"
                "        <designmodified>\r\n"
                "            <datetime>20231201T000000,00+00</datetime>\r\n"
                "        </designmodified>\r\n"
                "    </databaseinfo>\r\n"
                "</database>\r\n");
}

TEST_F(DatabasePropertiesTest, NothingElseIsLeftOrLogged) {
  EXPECT_TRUE(Export("").ok());
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(DatabasePropertiesTest, LibraryIsAskedInOrder) {
  EXPECT_TRUE(Export(R"("categories": "Garden")").ok());
  EXPECT_EQ(Order({"NSFDbReplicaInfoGet", "NSFDbPathGet", "OSTranslate", "NSFDbInfoGet",
                   "NSFDbInfoParse", "NSFDbIDGet", "NSFDbSpaceUsageScaled", "NSFDbModifiedTime"}),
            (Lines{"NSFDbReplicaInfoGet", "NSFDbPathGet", "OSTranslate", "NSFDbInfoGet",
                   "NSFDbInfoParse", "OSTranslate", "NSFDbInfoParse", "OSTranslate", "NSFDbIDGet",
                   "NSFDbSpaceUsageScaled", "NSFDbModifiedTime"}));
}

TEST_F(DatabasePropertiesTest, TitleIsAlwaysThere) { EXPECT_EQ(Attribute("title", ""), ""); }

TEST_F(DatabasePropertiesTest, LongPathIsWhole) {
  const std::wstring folder(120, L'p');
  WriteData(folder + L"/" + folder + L"/long.nsf", "{}");
  Start();
  const std::string path = std::string(120, 'p') + "/" + std::string(120, 'p') + "/long.nsf";
  Database database;
  ASSERT_TRUE(OpenDatabase(path, database).ok());
  EXPECT_TRUE(ExportDatabaseProperties(database).ok());
  EXPECT_NE(ReadBytes(PathOf(L"db.dxl")).find(" path=\"" + path + "\""), std::string::npos);
}

TEST_F(DatabasePropertiesTest, NothingIsAskedThatCouldNotBeWritten) {
  const FileFaults faults("open (temporary) * accessDenied");
  EXPECT_EQ(Export("").code(), 270);
  EXPECT_EQ(Calls("NSFDbReplicaInfoGet"), 0);
}

TEST_F(DatabasePropertiesTest, CategoriesAreThereOnlyWhenThereAreSome) {
  EXPECT_EQ(Attribute("categories", R"("title": "Herbs")"), "none");
}

TEST_F(DatabasePropertiesTest, TextIsUtf8AndEscaped) {
  EXPECT_EQ(Attribute("title", R"("title": "Kr\u00e4uter <\u20ac> & \"mehr\" 'so'")"),
            "Kr\xC3\xA4uter &lt;\xE2\x82\xAC&gt; &amp; &quot;mehr&quot; &apos;so&apos;");
}

struct Space {
  const char* granules;
  const char* diskspace;
  const char* percentused;
};

class DatabaseSpaceTest : public DatabasePropertiesTest,
                          public testing::WithParamInterface<Space> {};

TEST_P(DatabaseSpaceTest, IsToldInBytesAndPercent) {
  const Space& space = GetParam();
  const std::string keys = std::string(R"("space": )") + space.granules;
  const std::string document = Exported(keys);
  EXPECT_NE(document.find(std::string(" diskspace=\"") + space.diskspace + "\" percentused=\"" +
                          space.percentused + "\">"),
            std::string::npos)
      << document;
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, DatabaseSpaceTest,
    testing::Values(
        Space{R"({"allocatedGranules": 3, "freeGranules": 2, "granuleBytes": 1024})", "3072",
              "33.333333333333336"},
        // 5 GiB wrap to 1 GiB.
        Space{R"({"allocatedGranules": 5242880, "freeGranules": 0, "granuleBytes": 1024})",
              "1073741824", "100"},
        // 4 GiB wrap to nothing.
        Space{R"({"allocatedGranules": 4194304, "freeGranules": 4194304, "granuleBytes": 1024})",
              "0", "0"},
        // Half a kilobyte is none.
        Space{R"({"allocatedGranules": 3, "freeGranules": 0, "granuleBytes": 512})", "1024", "100"},
        // A product of more than 32 bits; the used granules are rounded on their own.
        Space{R"({"allocatedGranules": 20000000, "freeGranules": 5000000, "granuleBytes": 4096})",
              "315621376", "75"},
        // More kilobytes than 32 bits hold.
        Space{R"({"allocatedGranules": 4294967295, "freeGranules": 0, "granuleBytes": 65536})",
              "4294966272", "100"}));

// What a division by zero gives is the C runtime's word for it.
TEST_F(DatabasePropertiesTest, EmptyDatabaseDividesByZero) {
  const std::string none = R"("space": {"allocatedGranules": 0, "granuleBytes": 1024})";
  volatile double zero = 0;
  char expected[200];
  std::snprintf(expected, sizeof expected, "%.17g", zero * 100.0 / zero);
  EXPECT_EQ(Attribute("percentused", none), expected);
}

struct Failure {
  const char* entry;
  const char* message;
};

class DatabasePropertiesFailureTest : public DatabasePropertiesTest,
                                      public testing::WithParamInterface<Failure> {
 protected:
  Status ExportWithFailure() {
    WriteDatabase("{}");
    Start();
    const Database database = OpenTestDatabase();
    SetFaults(std::string(R"([{"entry": ")") + GetParam().entry + R"(", "status": 6409}])");
    const Status status = ExportDatabaseProperties(database);
    SetFaults("[]");
    return status;
  }
};

TEST_P(DatabasePropertiesFailureTest, IsAWarningAndTheResult) {
  EXPECT_EQ(ExportWithFailure().code(), 6409);
  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0].starts_with(std::string("#WARNING# - ") + GetParam().message + " ("))
      << lines[0];
  EXPECT_TRUE(lines[0].ends_with(")") && !lines[0].ends_with("()")) << lines[0];
}

TEST_P(DatabasePropertiesFailureTest, MakesNoFile) {
  EXPECT_FALSE(ExportWithFailure().ok());
  EXPECT_FALSE(Exists(PathOf(L"db.dxl")));
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
}

TEST_P(DatabasePropertiesFailureTest, LeavesAnEarlierFileAsItWas) {
  WriteBytes(PathOf(L"db.dxl"), "earlier");
  EXPECT_FALSE(ExportWithFailure().ok());
  EXPECT_EQ(ReadBytes(PathOf(L"db.dxl")), "earlier");
}

INSTANTIATE_TEST_SUITE_P(
    Calls, DatabasePropertiesFailureTest,
    testing::Values(Failure{"NSFDbReplicaInfoGet", "Error retrieving replicaid"},
                    Failure{"NSFDbPathGet", "Error retrieving database path"},
                    Failure{"NSFDbInfoGet", "Error retrieving database info"},
                    Failure{"NSFDbIDGet", "Error retrieving database id"},
                    Failure{"NSFDbSpaceUsageScaled", "Error retrieving database space usage"},
                    Failure{"NSFDbModifiedTime", "Error retrieving database modified times"}));

// The library's stop ends what was begun: nothing behind the failing call is asked.
TEST_F(DatabasePropertiesTest, FailureOfTheFirstCallAsksNothingMore) {
  WriteDatabase("{}");
  Start();
  const Database database = OpenTestDatabase();
  SetFaults(R"([{"entry": "NSFDbReplicaInfoGet", "status": 6409}])");
  EXPECT_FALSE(ExportDatabaseProperties(database).ok());
  EXPECT_EQ(Calls("NSFDbPathGet") + Calls("NSFDbInfoGet") + Calls("NSFDbModifiedTime"), 0);
  SetFaults("[]");
}

TEST_F(DatabasePropertiesTest, EarlierFileIsReplaced) {
  WriteBytes(PathOf(L"db.dxl"), std::string(5000, 'x'));
  EXPECT_TRUE(Exported(R"("title": "Herbs")").starts_with("<?xml version='1.0'"));
}

TEST_F(DatabasePropertiesTest, FileThatCannotBeWrittenIsLoggedAndAFailure) {
  const FileFaults faults("write db.dxl.new * diskFull");
  EXPECT_EQ(Export("").code(), 270);
  ASSERT_EQ(LogLines().size(), 1U);
  EXPECT_TRUE(LogLines()[0].starts_with("#WARNING# - Unable to write "));
  EXPECT_TRUE(LogLines()[0].ends_with("\\db.dxl"));
  EXPECT_FALSE(Exists(PathOf(L"db.dxl")));
}

notes_api::WORD LARKSPAN_NOTES_CALL TranslateNothing(notes_api::WORD, const char*, notes_api::WORD,
                                                     char*, notes_api::WORD) {
  return 0;
}

TEST_F(DatabasePropertiesTest, TextThatTranslatesToNothingIsEmpty) {
  WriteDatabase(R"({"title": "Herbs", "categories": "Garden"})");
  Start();
  const Database database = OpenTestDatabase();
  const ReplacedEntryPoint replaced("OSTranslate", TranslateNothing);
  EXPECT_TRUE(ExportDatabaseProperties(database).ok());
  EXPECT_NE(ReadBytes(PathOf(L"db.dxl")).find(" path=\"\" title=\"\">"), std::string::npos);
}

TEST_F(DatabasePropertiesTest, TextsOf1023BytesAreWhole) {
  const std::string longest(1023, 'x');
  const ReplacedEntryPoint path("NSFDbPathGet", TellLongestPath);
  const ReplacedEntryPoint fields("NSFDbInfoParse", TellLongestField);
  const std::string document = Exported("");
  EXPECT_NE(document.find(" path=\"" + longest + "\""), std::string::npos);
  EXPECT_NE(document.find(" title=\"" + longest + "\""), std::string::npos);
  EXPECT_NE(document.find(" categories=\"" + longest + "\""), std::string::npos);
}

TEST_F(DatabasePropertiesTest, ExpandedPathIsNotAskedFor) {
  expandedPath = &expandedPath;
  const ReplacedEntryPoint path("NSFDbPathGet", TellLongestPath);
  Exported("");
  EXPECT_EQ(expandedPath, nullptr);
}

TEST_F(DatabasePropertiesTest, ControlCharactersBecomeSpaces) {
  EXPECT_EQ(Attribute("title", R"("title": "a\u0001b\tc\nd\u001Fe")"), "a b c d e");
}

TEST_F(DatabasePropertiesTest, CodePointsThatAreNoCharactersBecomeSpaces) {
  EXPECT_EQ(Attribute("title", R"("title": "a\uFFFEb\uFFFFc\uFFFDd")"),
            "a b c\xEF\xBF\xBD"
            "d");
}

}  // namespace
}  // namespace larkspan
