// Failures before the first note that would lose notes, or change what comes out, if nobody said
// so.
#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class SetUpFailuresSystemTest : public SystemTest {
 protected:
  void Export(const std::string& fault, const std::vector<std::wstring>& arguments) {
    run_.AddDatabase(L"two.nsf", DocumentsJson(2, fault.empty() ? "" : FaultsMember(fault)));
    EXPECT_EQ(run_.Export(L"two.nsf", arguments).exitCode, 0u);
    EXPECT_EQ(run_.LedgerFault(1), "");
  }
};

TEST_F(SetUpFailuresSystemTest, AnExporterPropertyThatIsRefusedIsNamedAndTheExportGoesOn) {
  run_.SetFaults(R"([{"entry": "DXLSetExporterProperty", "call": 17, "status": 585}])");
  Export("", {L"-archive"});
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - Error setting DXL exporter property 39 (Notes error 585)"});
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(SetUpFailuresSystemTest, ANoteThatCannotBeListedEndsTheRunInsteadOfBeingLost) {
  Export(R"({"entry": "IDInsert", "call": 2, "status": 585})", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Notes error 585)"});
  EXPECT_FALSE(run_.HasOutputFile(L"idtable.txt"));
}

TEST_F(SetUpFailuresSystemTest, ALaterWorkerWithoutTheListEndsTheRun) {
  Export("", {L"-archive", L"-l", L"00000902"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
}

TEST_F(SetUpFailuresSystemTest, ALaterWorkerWithADamagedListEndsTheRun) {
  WriteBytes(run_.output() + L"\\idtable.txt", "00000902\r\nXYZ\r\n00000906\r\n");
  Export("", {L"-archive", L"-l", L"00000001"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
}

TEST_F(SetUpFailuresSystemTest, ALaterWorkerThatCannotListANoteEndsTheRun) {
  WriteBytes(run_.output() + L"\\idtable.txt", "00000902\r\n00000906");
  Export(R"({"entry": "IDInsert", "call": 2, "status": 585})", {L"-archive", L"-l", L"00000001"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
}

}  // namespace
}  // namespace larkspan::testing
