#include <gtest/gtest.h>

#include <string>

#include "tests/support/ParameterName.h"
#include "tests/unit/export/NoteExportTest.h"

namespace larkspan {
namespace {

constexpr char kMinorLine[] =
    "#WARNING# - Minor: Detected corrupt document 0000090A, exported without images";

class DamageFallbackTest : public NoteExportTest {
 protected:
  DamageFallbackTest() { OpenNoteOf("1", R"({"name": "Body", "richText": ["a"]})"); }

  const std::wstring file_ = L"data\\0000090A.dxl";
};

struct Damage {
  const char* name;
  int status;
  bool isDamage;
};

class DamageStatus : public DamageFallbackTest, public testing::WithParamInterface<Damage> {};

TEST_P(DamageStatus, DecidesAboutTheFallback) {
  SetFaults("[" + Failing(1, GetParam().status) + "]");
  const Status status = Export();
  EXPECT_EQ(status.code(), GetParam().isDamage ? 0 : GetParam().status);
  EXPECT_EQ(Files(), GetParam().isDamage ? Lines{"data/0000090A.dxl"} : Lines());
}

TEST_P(DamageStatus, DecidesAboutTheSecondFallback) {
  SetFaults("[" + Failing(1, 1173) + ", " + Failing(3, GetParam().status) + "]");
  const Status status = Export();
  EXPECT_EQ(status.code(), GetParam().isDamage ? 0 : GetParam().status);
  EXPECT_EQ(Calls("DXLExportNote"), GetParam().isDamage ? 3 : 2);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, DamageStatus,
    testing::Values(Damage{"DamagedDocument", 1173, true}, Damage{"OneBelow", 1172, false},
                    Damage{"OneAbove", 1174, false}, Damage{"FirstOfRange", 0x3600, true},
                    Damage{"InsideRange", 0x3610, true}, Damage{"LastOfRange", 0x361F, true},
                    Damage{"BeforeRange", 0x35FF, false}, Damage{"BehindRange", 0x3620, false},
                    Damage{"TopBits", 0x4000 + 1173, false}, Damage{"Other", 1000, false},
                    Damage{"DesignFailure", 6967, false}),
    kNameOf);

TEST_F(DamageFallbackTest, FirstFallbackLeavesImagesOut) {
  SetFaults("[" + Failing(1, 1173) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(file_), 3);
}

TEST_F(DamageFallbackTest, FirstFallbackIsAMinorLine) {
  SetFaults("[" + Failing(1, 1173) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(LogLines(), Lines{kMinorLine});
}

TEST_F(DamageFallbackTest, SecondFallbackLeavesConversionOutToo) {
  SetFaults("[" + Failing(1, 1173) + ", " + Failing(3, 0x3600) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(file_), 4);
}

TEST_F(DamageFallbackTest, SecondFallbackIsSilent) {
  SetFaults("[" + Failing(1, 1173) + ", " + Failing(3, 1173) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(DamageFallbackTest, ThereIsNoThirdFallback) {
  SetFaults("[" + Failing(1, 1173) + ", " + Failing(3, 1173) + ", " + Failing(4, 0x3601) + "]");
  EXPECT_EQ(Export().code(), 0x3601);
  EXPECT_EQ(Calls("DXLExportNote"), 3);
  EXPECT_EQ(Files(), Lines());
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(DamageFallbackTest, ExportThatSucceedsIsNotRepeated) {
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(Calls("DXLExportNote"), 1);
  EXPECT_EQ(LogLines(), Lines());
}

class PictureFallbackTest : public NoteExportTest {};

TEST_F(PictureFallbackTest, NoteWithPicturesFallsBackInTheSameWay) {
  OpenNoteOf("1", R"({"name": "Body", "richText": [{"picture": "a"}]})");
  SetFaults("[" + Failing(2, 1173) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(L"data\\0000090A.dxl"), 3);
  EXPECT_EQ(LogLines(), Lines{kMinorLine});
}

TEST_F(PictureFallbackTest, FallbackWorksOutsideArchivesToo) {
  SetArchive(false);
  OpenNoteOf("\"form\"", "");
  SetFaults("[" + Failing(1, 1173) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(L"0000090A.dxl"), 3);
}

}  // namespace
}  // namespace larkspan
