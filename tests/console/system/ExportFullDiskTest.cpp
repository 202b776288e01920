// Exports onto a disk that refuses.
#include <filesystem>

#include "tests/console/system/ExportTest.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

// The console program with an exporter beside it whose files fail as planned.
class ExportFullDiskTest : public ExportTest {
 protected:
  ExportFullDiskTest() {
    const std::filesystem::path from = programFolder_;
    const std::filesystem::path to = run_.folder() + L"\\programs";
    std::filesystem::create_directory(to);
    std::filesystem::copy(from / L"larkspan-console.exe", to / L"larkspan-console.exe");
    std::filesystem::copy(from / L"larkspan_faulty.exe", to / L"larkspan.exe");
    std::filesystem::copy(from / L"nnotes.dll", to / L"nnotes.dll");
    programFolder_ = to.wstring();
    run_.AddDatabase(database_, testing::DocumentsJson(6));
  }

  ConsoleEnd ExportWith(const std::wstring& plan, const Words& more = {}) const {
    const ScopedEnvironmentVariable variable(kFileFaultsVariable, plan);
    return Export(more);
  }
};

TEST_F(ExportFullDiskTest, ANoteThatDoesNotFitIsLostWithItsCause) {
  const ConsoleEnd end = ExportWith(L"write temp.tmp 3 diskFull 10");
  EXPECT_EQ(end.code, 3u) << end.output;
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("stage"), "export");
  EXPECT_EQ(losses[0].at("cause"), "Error writing to file");
}

TEST_F(ExportFullDiskTest, ADiskThatStaysFullCanBeGivenUp) {
  const ConsoleEnd end = ExportWith(L"write temp.tmp 3- diskFull", {L"--max-losses", L"50%"});
  EXPECT_EQ(end.code, 5u) << end.output;
}

TEST_F(ExportFullDiskTest, AListThatDoesNotFitCouldNotRun) {
  const ConsoleEnd end = ExportWith(L"write idtable.txt * diskFull");
  EXPECT_EQ(end.code, 2u) << end.output;
  EXPECT_TRUE(Holds(end.output, "Unable to save document list")) << end.output;
}

TEST_F(ExportFullDiskTest, AnIndexLineThatIsMissingIsALoss) {
  const ConsoleEnd end = ExportWith(L"write unidindex.txt 2 diskFull");
  EXPECT_EQ(end.code, 3u) << end.output;
  EXPECT_EQ(Outcome().at("account").at("losses").at(0).at("stage"), "index");
}

TEST_F(ExportFullDiskTest, AReportThatIsMissingIsNotAccountedFor) {
  EXPECT_EQ(ExportWith(L"write audit.txt * diskFull; open audit.txt * diskFull").code, 5u);
}

TEST_F(ExportFullDiskTest, ALogThatIsMissingLeavesALostNoteUnaccountedFor) {
  const ConsoleEnd end =
      ExportWith(L"write log.txt * diskFull; open log.txt * diskFull; write temp.tmp 3 diskFull");
  EXPECT_EQ(end.code, 5u) << end.output;
}

}  // namespace
}  // namespace larkspan::console
