#include "export/ExporterSet.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/NotesFixture.h"
#include "tests/support/ParameterName.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

constexpr char kPictureText[] = R"("<run><font size='9pt' color='#CCCCCC' />)"
                                R"(&lt;Picture removed by Brevink Export&gt;</run>")";

class ExporterSetTest : public NotesFixture {
 protected:
  ExporterSetTest() { Start(); }

  // The properties set, as [exporter, property, value] in order, in JSON.
  static std::string PropertiesSet(bool archive) {
    SetArchive(archive);
    ExporterSet exporters;
    EXPECT_TRUE(CreateExporters(exporters));
    return Arguments("DXLSetExporterProperty");
  }
};

TEST_F(ExporterSetTest, ArchiveKeepsPicturesAndConvertsInTheNormalExporter) {
  const std::string text = kPictureText;
  EXPECT_EQ(PropertiesSet(true),
            "[[1,3,0],[1,38,0],[1,37,0],[1,36,0],[1,39,0],[1,35,1],"
            "[2,3,0],[2,38,0],[2,37,0],[2,36,0],[2,39,0],[2,35,0],"
            "[3,3,0],[3,38,0],[3,37,0],[3,36,0],[3,39,1],[3,14," +
                text +
                "],[3,35,1],"
                "[4,3,0],[4,38,0],[4,37,0],[4,36,0],[4,39,1],[4,14," +
                text +
                "],[4,35,0],"
                "[5,30,1],[5,6,1]]");
}

TEST_F(ExporterSetTest, OutsideArchivesPicturesAreRemovedEverywhere) {
  const std::string text = kPictureText;
  EXPECT_EQ(PropertiesSet(false), "[[1,3,0],[1,38,1],[1,37,1],[1,36,1],[1,39,1],[1,14," + text +
                                      "],[1,35,0],"
                                      "[2,3,0],[2,38,1],[2,37,1],[2,36,1],[2,39,1],[2,14," +
                                      text +
                                      "],[2,35,0],"
                                      "[3,3,0],[3,38,1],[3,37,1],[3,36,1],[3,39,1],[3,14," +
                                      text +
                                      "],[3,35,1],"
                                      "[4,3,0],[4,38,1],[4,37,1],[4,36,1],[4,39,1],[4,14," +
                                      text +
                                      "],[4,35,0],"
                                      "[5,30,1],[5,6,1]]");
}

TEST_F(ExporterSetTest, EachExporterIsConfiguredRightAfterItsCreation) {
  PropertiesSet(true);
  Lines expected;
  for (const int properties : {6, 6, 7, 7, 2}) {
    expected.push_back("DXLCreateExporter");
    expected.insert(expected.end(), properties, "DXLSetExporterProperty");
  }
  EXPECT_EQ(Order({"DXLCreateExporter", "DXLSetExporterProperty"}), expected);
}

TEST_F(ExporterSetTest, SetIsNotLogged) {
  PropertiesSet(true);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ExporterSetTest, AllFiveAreDeletedWithTheSet) {
  PropertiesSet(true);
  EXPECT_EQ(Calls("DXLDeleteExporter"), 5);
}

std::vector<notes_api::DHANDLE> deleted;

void LARKSPAN_NOTES_CALL RecordDeletion(notes_api::DHANDLE exporter) {
  deleted.push_back(exporter);
  Original("DXLDeleteExporter", notes_api::DXLDeleteExporter)(exporter);
}

TEST_F(ExporterSetTest, ExportersAreDeletedInTheReverseOrder) {
  const ReplacedEntryPoint replaced("DXLDeleteExporter", RecordDeletion);
  std::vector<notes_api::DHANDLE> created;
  deleted.clear();
  {
    ExporterSet exporters;
    ASSERT_TRUE(CreateExporters(exporters));
    created = {exporters.raw.get(), exporters.noImagesNoConvert.get(), exporters.noImages.get(),
               exporters.noConvert.get(), exporters.normal.get()};
  }
  EXPECT_EQ(deleted, created);
}

struct Creation {
  const char* name;
  int exporter;
  const char* line;
};

class ExporterCreation : public ExporterSetTest, public testing::WithParamInterface<Creation> {
 protected:
  // Lets the creation fail and returns what CreateExporters says.
  static bool CreateWithFault() {
    SetFaults(R"([{"entry": "DXLCreateExporter", "exporter": )" +
              std::to_string(GetParam().exporter) + R"(, "status": 273}])");
    ExporterSet exporters;
    return CreateExporters(exporters);
  }
};

TEST_P(ExporterCreation, ThatFailsIsAnErrorLine) {
  EXPECT_FALSE(CreateWithFault());
  EXPECT_EQ(LogLines(), Lines{GetParam().line});
}

TEST_P(ExporterCreation, ThatFailsDeletesTheEarlierOnes) {
  CreateWithFault();
  EXPECT_EQ(Calls("DXLCreateExporter"), GetParam().exporter);
  EXPECT_EQ(Calls("DXLDeleteExporter"), GetParam().exporter - 1);
}

INSTANTIATE_TEST_SUITE_P(
    Exporters, ExporterCreation,
    testing::Values(
        Creation{"Normal", 1, "#ERROR# - Error creating DXL Exporter (Insufficient memory)"},
        Creation{"NoConvert", 2,
                 "#ERROR# - Error creating DXL Exporter (no convert) (Insufficient memory)"},
        Creation{"NoImages", 3,
                 "#ERROR# - Error creating DXL Exporter (no images) (Insufficient memory)"},
        Creation{
            "NoImagesNoConvert", 4,
            "#ERROR# - Error creating DXL Exporter (no images, no convert) (Insufficient memory)"},
        Creation{"Raw", 5, "#ERROR# - Error creating DXL Exporter (raw) (Insufficient memory)"}),
    kNameOf);

TEST_F(ExporterSetTest, RefusedPropertyIsAWarning) {
  SetFaults(R"([{"entry": "DXLSetExporterProperty", "exporter": 3, "call": 6, "status": 1180}])");
  PropertiesSet(true);
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Error setting DXL exporter property 14 "
                              "(Exporter property is unknown)"});
}

TEST_F(ExporterSetTest, RefusedPropertyStopsNothing) {
  SetFaults(R"([{"entry": "DXLSetExporterProperty", "status": 1180}])");
  PropertiesSet(true);
  EXPECT_EQ(Calls("DXLSetExporterProperty"), 28);
}

}  // namespace
}  // namespace larkspan
