// The calling program's side: progress lines while the run lasts, and its end by a pipe.
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

constexpr int kDocuments = 60;

class StopByPipeSystemTest : public SystemTest {
 protected:
  // Every export of a note takes a while, so that the stop comes long before the last note.
  void SetUp() override {
    run_.AddDatabase(
        L"slow.nsf",
        DocumentsJson(kDocuments, FaultsMember(R"({"entry": "DXLExportNote", "wait": 100})")));
  }

  std::wstring SlowExport(const std::vector<std::wstring>& arguments) const {
    return run_.CommandLine(L"slow.nsf", arguments);
  }

  void ExpectStoppedEarly() {
    EXPECT_LT(FilesIn("data").size(), static_cast<std::size_t>(kDocuments));
    EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
    EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
    EXPECT_FALSE(Contains(AuditLines(), "Database size after archive : 65536"));
    EXPECT_EQ(Tail(AuditLines(), 1), Lines{"Documents exported with warnings :        0"});
    EXPECT_EQ(run_.LedgerFault(1), "");
  }

  StopPipe pipe_;
};

TEST_F(StopByPipeSystemTest, ClosingThePipeStopsTheExportAtTheNextDocument) {
  Program program(run_.Executable(),
                  SlowExport({L"-archive", L"-debug", L"-pipe", pipe_.HandleText()}));
  pipe_.CloseReadEnd();
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 3));
  pipe_.Close();
  EXPECT_EQ(program.WaitForEnd().exitCode, 0u);
  ExpectStoppedEarly();
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - MonitorPipe: Read completed cleanly"), 1);
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - Invoking child process"), 1);
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - No marker file found"), 1);
}

TEST_F(StopByPipeSystemTest, DataOnThePipeStopsTheExport) {
  Program program(run_.Executable(), SlowExport({L"-archive", L"-pipe", pipe_.HandleText()}));
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 2));
  pipe_.Write("x");
  program.WaitForEnd();
  ExpectStoppedEarly();
}

TEST_F(StopByPipeSystemTest, ANoteWhoseProgressLineWasNotWrittenIsNotExported) {
  Program program(run_.Executable(), SlowExport({L"-archive", L"-pipe", pipe_.HandleText()}));
  pipe_.CloseReadEnd();
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 2));
  pipe_.Close();
  const std::string output = program.WaitForEnd().standardOutput;
  std::size_t documents = 0;
  for (std::size_t at = output.find("DOCUMENT: "); at != std::string::npos;
       at = output.find("DOCUMENT: ", at + 1)) {
    ++documents;
  }
  EXPECT_EQ(FilesIn("data").size(), documents);
}

TEST_F(StopByPipeSystemTest, AHandleThatIsNoneStopsTheExport) {
  Program program(run_.Executable(), SlowExport({L"-archive", L"-pipe", L"987654"}));
  program.WaitForEnd();
  ExpectStoppedEarly();
}

TEST_F(StopByPipeSystemTest, WithoutArchiveThePipeIsNotWatched) {
  const std::string form = R"({"sizeKilobytes": 64, "notes": [{"id": "00000106", "class": "form",
      "items": [{"name": "Title", "text": "Form"}]}]})";
  run_.AddDatabase(L"form.nsf", form);
  pipe_.Close();
  Program program(run_.Executable(),
                  run_.CommandLine(L"form.nsf", {L"-debug", L"-pipe", pipe_.HandleText()}));
  EXPECT_EQ(program.WaitForEnd().standardOutput, "");
  EXPECT_TRUE(run_.HasOutputFile(L"00000106.dxl"));
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - MonitorPipe: Read completed cleanly"), 0);
}

TEST_F(StopByPipeSystemTest, AnOpenPipeThatNobodyWritesToDoesNotStopTheExport) {
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  Program program(run_.Executable(),
                  run_.CommandLine(L"two.nsf", {L"-archive", L"-pipe", pipe_.HandleText()}));
  EXPECT_EQ(program.WaitForEnd().exitCode, 0u);
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

}  // namespace
}  // namespace larkspan::testing
