// What a caller sees of the command line: exit codes, silence, and which role ran.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/ExportRun.h"
#include "tests/support/FileBytes.h"

namespace larkspan::testing {
namespace {

class CommandLineSystemTest : public ::testing::Test {
 protected:
  // Runs the program; whatever it says would be in the output folder or on standard output.
  std::uint32_t SilentExitCode(const std::vector<std::wstring>& arguments) {
    const ProgramResult result = run_.RunArguments(arguments);
    EXPECT_EQ(result.standardOutput, "");
    EXPECT_TRUE(run_.Tree().empty());
    return result.exitCode;
  }

  ExportRun run_;
};

TEST_F(CommandLineSystemTest, NoArgumentsEndWithOne) { EXPECT_EQ(SilentExitCode({}), 1u); }

TEST_F(CommandLineSystemTest, HelpAtTheEndOfAWholeExportDoesNothing) {
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf", L"-o", run_.output(), L"-archive", L"-h"}), 1u);
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf", L"-o", run_.output(), L"-?"}), 1u);
}

TEST_F(CommandLineSystemTest, HelpWinsOverTheVersionThatFollows) {
  EXPECT_EQ(SilentExitCode({L"-h", L"-v"}), 1u);
}

TEST_F(CommandLineSystemTest, AnInvalidParameterEndsWithOne) {
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf", L"-o", run_.output(), L"-output"}), 1u);
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf", L"-o", run_.output(), L"-s"}), 1u);
}

TEST_F(CommandLineSystemTest, AMissingPathOrOutputFolderEndsWithOne) {
  EXPECT_EQ(SilentExitCode({L"-o", run_.output()}), 1u);
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf"}), 1u);
  EXPECT_EQ(SilentExitCode({L"-p", L"", L"-o", run_.output()}), 1u);
}

TEST_F(CommandLineSystemTest, AnOutputFolderThatIsMissingEndsWithOne) {
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf", L"-o", run_.output() + L"\\none"}), 1u);
}

TEST_F(CommandLineSystemTest, AnOutputPathThatNamesAFileEndsWithOne) {
  const std::wstring file = run_.folder() + L"\\file";
  WriteBytes(file, "kept");
  EXPECT_EQ(SilentExitCode({L"-p", L"sample.nsf", L"-o", file}), 1u);
  EXPECT_EQ(ReadBytes(file), "kept");
}

TEST_F(CommandLineSystemTest, ALineThatEndsInsideAQuoteEndsWithOneInsteadOfMakingSupervisors) {
  const std::wstring line = run_.Executable() + L" -p sample.nsf -o \"" + run_.output() +
                            L"\" -id x.id -password \"secret\\\"";
  const ProgramResult result = Program(run_.Executable(), line).WaitForEnd();
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_TRUE(run_.Tree().empty());
}

TEST_F(CommandLineSystemTest, AMissingConfigurationIsAnErrorInTheLogAndEndsTheRun) {
  const ProgramResult result =
      run_.RunArguments({L"=" + run_.folder() + L"\\none.ini", L"-p", L"sample.nsf", L"-o",
                         run_.output(), L"-archive"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(run_.Log(), "#ERROR# - Unable to locate notes.ini\r\n");
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_TRUE(run_.HasOutputFile(L"audit.txt"));
}

TEST_F(CommandLineSystemTest, AResumeNoteIdOfAllOnesRunsASupervisor) {
  run_.RunArguments({L"=" + run_.folder() + L"\\none.ini", L"-p", L"sample.nsf", L"-o",
                     run_.output(), L"-l", L"FFFFFFFF"});
  EXPECT_NE(run_.OutputFile(L"audit.txt").find("Archive started at: "), std::string::npos);
}

TEST_F(CommandLineSystemTest, AResumeNoteIdOfZeroRunsAWorkerThatWritesNoAuditFrame) {
  const ProgramResult result =
      run_.RunArguments({L"=" + run_.folder() + L"\\none.ini", L"-p", L"sample.nsf", L"-o",
                         run_.output(), L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(run_.Log(), "#ERROR# - Unable to locate notes.ini\r\n");
  EXPECT_FALSE(run_.HasOutputFile(L"audit.txt"));
}

}  // namespace
}  // namespace larkspan::testing
