// Command lines of `export` that are refused, and what is said of them.
#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

class ExportUsageTest : public ExportTest {
 protected:
  // Nothing is made of the folder.
  void ExpectRefused(const Words& more, const std::string& message) {
    const ConsoleEnd end = Export(more);
    EXPECT_EQ(end.code, 1u) << message;
    EXPECT_TRUE(Holds(end.errors, message)) << end.errors;
    EXPECT_EQ(end.output, "");
    EXPECT_FALSE(Exists(out_));
  }
};

TEST_F(ExportUsageTest, ATimeIsOfAtLeastASecond) {
  for (const wchar_t* time :
       {L"0", L"-1", L"0.5", L"1ms", L"ten", L"10d", L"nan", L"inf", L"1e9h", L"10 m", L"s"}) {
    ExpectRefused({L"--stall", time}, "--stall");
  }
}

TEST_F(ExportUsageTest, ALimitOfLossesIsANumberOrAShare) {
  for (const wchar_t* limit : {L"x", L"-1", L"-1%", L"%", L"5%%", L"5 %", L"nan", L"inf%"}) {
    ExpectRefused({L"--max-losses", limit}, "--max-losses");
  }
}

TEST_F(ExportUsageTest, AGiveUpIsAPositiveNumber) {
  for (const wchar_t* number : {L"0", L"-3", L"many", L"1.5"}) {
    ExpectRefused({L"--give-up", number}, "--give-up");
  }
}

TEST_F(ExportUsageTest, AValueThatBeginsWithAnEqualsSignIsRefused) {
  for (const wchar_t* option :
       {L"--server", L"--id-file", L"--password-file", L"--stall", L"--max-losses"}) {
    ExpectRefused({option, L"=x"}, "may not begin with '='");
  }
}

TEST_F(ExportUsageTest, SoIsThatOfThePathTheFolderAndTheConfiguration) {
  const Words rows[] = {
      {L"export", L"--path", L"=x", L"--out", out_},
      {L"export", L"--path", L"x.nsf", L"--out", L"=x"},
      {L"export", L"--path", L"x.nsf", L"--out", out_, L"--notes-ini", L"=x"},
  };
  for (const Words& row : rows) {
    const ConsoleEnd end = Run(row);
    EXPECT_EQ(end.code, 1u);
    EXPECT_TRUE(Holds(end.errors, "may not begin with '='")) << end.errors;
  }
}

TEST_F(ExportUsageTest, PathAndFolderAreNeeded) {
  const ConsoleEnd noPath = Run({L"export", L"--out", out_});
  EXPECT_EQ(noPath.code, 1u);
  EXPECT_TRUE(Holds(noPath.errors, "--path")) << noPath.errors;
  const ConsoleEnd noFolder = Run({L"export", L"--path", L"x.nsf"});
  EXPECT_EQ(noFolder.code, 1u);
  EXPECT_TRUE(Holds(noFolder.errors, "--out")) << noFolder.errors;
  EXPECT_EQ(Run({L"export", L"--path", L"x.nsf", L"--out", L""}).code, 1u);
}

TEST_F(ExportUsageTest, AnOptionComesOnce) {
  ExpectRefused({L"--server", L"a", L"--server", L"b"}, "--server");
}

TEST_F(ExportUsageTest, JsonAndQuietExcludeEachOther) {
  ExpectRefused({L"--json", L"--quiet"}, "--quiet");
}

TEST_F(ExportUsageTest, AnUnknownOptionIsAnsweredWithTheNearestOne) {
  ExpectRefused({L"--no-vews"}, "did you mean '--no-views'?");
  ExpectRefused({L"--password", L"geheim"}, "unknown option '--password'");
}

TEST_F(ExportUsageTest, HelpShowsEachOptionAndAnExample) {
  const ConsoleEnd end = Run({L"export", L"--help"});
  EXPECT_EQ(end.code, 0u);
  for (const char* option :
       {"--server",      "--path",          "--out",
        "--id-file",     "--password-file", "--password-stdin",
        "--full-access", "--no-views",      "--design-only",
        "--notes-ini",   "--debug",         "--stall",
        "--give-up",     "--max-losses",    "--stop-on-stdin-end",
        "--atomic",      "--confirm",       "--resume",
        "--json",        "--quiet",         "larkspan-console export --server Mill/Example"}) {
    EXPECT_TRUE(Holds(end.output, option)) << option;
  }
}

}  // namespace
}  // namespace larkspan::console
