#include "notes/DxlExporter.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/OneNoteFixture.h"

namespace larkspan {
namespace {

void LARKSPAN_NOTES_CALL Append(const notes_api::BYTE* buffer, notes_api::DWORD length,
                                void* context) {
  static_cast<std::string*>(context)->append(reinterpret_cast<const char*>(buffer), length);
}

class DxlExporterTest : public OneNoteFixture {
 protected:
  DxlExporterTest() : OneNoteFixture(7) {}

  std::string output_;
};

TEST_F(DxlExporterTest, CreationThatFailsLeavesNoExporter) {
  SetFaults(R"([{"entry": "DXLCreateExporter", "status": 273}])");
  EXPECT_EQ(CreateExporter(exporter_).code(), 273);
  EXPECT_EQ(exporter_.get(), 0u);
}

TEST_F(DxlExporterTest, NumberIsHandedOverByItsAddress) {
  EXPECT_TRUE(SetExporterProperty(exporter_, 38, 1).ok());
  EXPECT_TRUE(SetExporterProperty(exporter_, 35, 0).ok());
  EXPECT_EQ(Arguments("DXLSetExporterProperty"), "[[1,38,1],[1,35,0]]");
}

TEST_F(DxlExporterTest, TextIsHandedOverItself) {
  EXPECT_TRUE(SetExporterTextProperty(exporter_, 14, "<run/>").ok());
  EXPECT_EQ(Arguments("DXLSetExporterProperty"), R"([[1,14,"<run/>"]])");
}

TEST_F(DxlExporterTest, RefusedPropertyIsTold) {
  EXPECT_EQ(SetExporterProperty(exporter_, 99, 1).code(), 1180);
  SetFaults(R"([{"entry": "DXLSetExporterProperty", "status": 1000}])");
  EXPECT_EQ(SetExporterTextProperty(exporter_, 14, "").code(), 1000);
}

TEST_F(DxlExporterTest, NoteIsHandedToTheCallbackInChunks) {
  EXPECT_TRUE(ExportNoteDxl(exporter_, Append, note_, &output_).ok());
  EXPECT_NE(output_.find("<noteinfo noteid='902'"), std::string::npos);
  EXPECT_TRUE(output_.ends_with("</document>\n"));
}

TEST_F(DxlExporterTest, StatusOfTheNotesExportIsReturned) {
  SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "status": 1173}])");
  EXPECT_EQ(ExportNoteDxl(exporter_, Append, note_, &output_).code(), 1173);
}

TEST_F(DxlExporterTest, AclIsHandedToTheCallbackInChunks) {
  EXPECT_TRUE(ExportAclDxl(exporter_, Append, database_, &output_).ok());
  EXPECT_TRUE(output_.ends_with("</acl>\n"));
}

TEST_F(DxlExporterTest, StatusOfTheAclsExportIsReturned) {
  SetFaults(R"([{"entry": "DXLExportACL", "status": 1000}])");
  EXPECT_EQ(ExportAclDxl(exporter_, Append, database_, &output_).code(), 1000);
}

}  // namespace
}  // namespace larkspan
