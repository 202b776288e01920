// The properties in db.dxl, against what the databases say.
#include <nlohmann/json.hpp>

#include "tests/xml/ShownProperties.h"
#include "tests/xml/XmlTest.h"

namespace larkspan {

namespace {

class PropertiesTest : public TreeTest {
 protected:
  static std::string File() { return ReadWholeFile(GetParam().folder / "db.dxl"); }
};

TEST_P(PropertiesTest, AreThoseOfTheDatabase) {
  const std::filesystem::path& database = GetParam().database;
  EXPECT_EQ(ReadShownProperties(File()),
            DatabaseProperties(ReadDatabase(GetParam()), database.filename().string(),
                               std::filesystem::file_size(database)));
}

TEST_P(PropertiesTest, StandBehindADeclarationAndADoctypeOnTheRootsLine) {
  const std::string start = std::string(kDeclarationLine) + "<!DOCTYPE database><database ";
  EXPECT_TRUE(File().starts_with(start)) << File();
}

INSTANTIATE_TEST_SUITE_P(Trees, PropertiesTest, ::testing::ValuesIn(AllTrees()), TreeTestName);

}  // namespace

}  // namespace larkspan
