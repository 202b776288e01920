#include "notes/DxlExporter.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "tests/support/OneNoteFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::DHANDLE;
using notes_api::STATUS;

class DxlExporterTest : public OneNoteFixture {
 protected:
  DxlExporterTest() : OneNoteFixture(7) {}

  Status ExportTestNote() { return ExportNoteDxl(exporter_, note_, L"temp.tmp", append_); }
  Status ExportTestAcl() { return ExportAclDxl(exporter_, database_, L"temp.tmp", append_); }

  std::string output_;
  const DxlVisitor append_ = [this](std::string_view chunk) { output_ += chunk; };
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

TEST_F(DxlExporterTest, NoteIsHandedToTheVisitorInChunks) {
  EXPECT_TRUE(ExportTestNote().ok());
  EXPECT_NE(output_.find("<noteinfo noteid='902'"), std::string::npos);
  EXPECT_TRUE(output_.ends_with("</document>\n"));
}

TEST_F(DxlExporterTest, StatusOfTheNotesExportIsReturned) {
  SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "status": 1173}])");
  EXPECT_EQ(ExportTestNote().code(), 1173);
}

TEST_F(DxlExporterTest, AclIsHandedToTheVisitorInChunks) {
  EXPECT_TRUE(ExportTestAcl().ok());
  EXPECT_TRUE(output_.ends_with("</acl>\n"));
}

TEST_F(DxlExporterTest, StatusOfTheAclsExportIsReturned) {
  SetFaults(R"([{"entry": "DXLExportACL", "status": 1000}])");
  EXPECT_EQ(ExportTestAcl().code(), 1000);
}

std::wstring contextName;

STATUS LARKSPAN_NOTES_CALL RecordContext(DHANDLE, notes_api::DxlOutputCallback, DHANDLE,
                                         void* context) {
  contextName = static_cast<const wchar_t*>(context);
  return 0;
}

TEST_F(DxlExporterTest, ContextIsTheNameOfTheOutput) {
  const ReplacedEntryPoint note("DXLExportNote", RecordContext);
  EXPECT_TRUE(ExportTestNote().ok());
  EXPECT_EQ(contextName, L"temp.tmp");
  const ReplacedEntryPoint acl("DXLExportACL", RecordContext);
  contextName.clear();
  EXPECT_TRUE(ExportTestAcl().ok());
  EXPECT_EQ(contextName, L"temp.tmp");
}

TEST_F(DxlExporterTest, ExceptionOfTheVisitorComesOutAndEndsTheVisits) {
  int visits = 0;
  const DxlVisitor refuse = [&](std::string_view) {
    ++visits;
    throw std::runtime_error("refused");
  };
  EXPECT_THROW(static_cast<void>(ExportNoteDxl(exporter_, note_, L"temp.tmp", refuse)),
               std::runtime_error);
  EXPECT_EQ(visits, 1);
}

}  // namespace
}  // namespace larkspan
