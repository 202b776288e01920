#include "console/doctor/DoctorDisplay.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "console/show/TextWidth.h"
#include "tests/console/show/RecordedSink.h"

namespace larkspan::console {
namespace {

const std::vector<Check> kFourChecks = {
    {"exporter", Passed("C:\\Notes\\larkspan.exe, version 0.1.0, 64-bit")},
    {"library", Warned("in the current folder", "Move it.")},
    {"names", Failed("of 73 that larkspan.exe needs 1 is missing: DXLExportACL",
                     "Use a machine with a newer Notes: larkspan.exe cannot work with this one.")},
    {"runtime", NotTried("the check 'names' failed")},
};

void ShowAll(DoctorDisplay& display, ExitCode code = ExitCode::kCouldNotRun) {
  for (const Check& check : kFourChecks) {
    display.Begin(check.name);
    display.Tell(check);
  }
  display.End(kFourChecks, code);
}

class DoctorTableTest : public ::testing::Test {
 protected:
  std::string Shown() {
    ShowAll(*MakeDoctorTable(sink_));
    return sink_.text;
  }

  RecordedSink sink_;
};

TEST_F(DoctorTableTest, InAFileHasARowForEachCheckAndNothingIsCut) {
  EXPECT_EQ(Shown(),
            "exporter   passed     C:\\Notes\\larkspan.exe, version 0.1.0, 64-bit\n"
            "library    warning    in the current folder\n"
            "                      What to do: Move it.\n"
            "names      failed     of 73 that larkspan.exe needs 1 is missing: DXLExportACL\n"
            "                      What to do: Use a machine with a newer Notes: larkspan.exe "
            "cannot work with this one.\n"
            "runtime    not tried  the check 'names' failed\n"
            "\n"
            "1 passed, 1 warning, 1 failed, 1 not tried\n");
}

TEST_F(DoctorTableTest, InATerminalStaysWithinItsWidth) {
  sink_.isTerminal = true;
  for (const int width : {48, 60, 80, 120}) {
    sink_.width = width;
    sink_.text.clear();
    std::istringstream lines(Shown());
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LT(ColumnsOf(line.substr(line.find_last_of('\r') + 1)), width) << line;
    }
  }
}

TEST_F(DoctorTableTest, InATerminalTheLinesOfADetailStandBelowEachOther) {
  sink_.isTerminal = true;
  sink_.width = 60;
  const std::string text = Shown();
  EXPECT_NE(text.find("\rnames      failed     of 73 that larkspan.exe needs 1 is\n"
                      "                      missing: DXLExportACL\n"),
            text.npos)
      << text;
}

TEST_F(DoctorTableTest, InATerminalACheckThatIsAtWorkHasItsName) {
  sink_.isTerminal = true;
  const auto display = MakeDoctorTable(sink_);
  display->Begin("runtime");
  EXPECT_EQ(sink_.text, "runtime    ...");
}

TEST_F(DoctorTableTest, TheWordsHaveColoursWhereTheTerminalTakesThem) {
  sink_.isTerminal = true;
  sink_.takesColours = true;
  const std::string text = Shown();
  EXPECT_NE(text.find("\x1B[32mpassed     \x1B[0m"), text.npos);
  EXPECT_NE(text.find("\x1B[33mwarning    \x1B[0m"), text.npos);
  EXPECT_NE(text.find("\x1B[31mfailed     \x1B[0m"), text.npos);
  EXPECT_NE(text.find("   not tried  the"), text.npos);
}

TEST_F(DoctorTableTest, WithoutATerminalThereAreNoColours) {
  sink_.takesColours = true;
  EXPECT_EQ(Shown().find('\x1B'), std::string::npos);
}

TEST_F(DoctorTableTest, NoCharacterOfADetailMovesTheCursor) {
  MakeDoctorTable(sink_)->Tell({"user", Passed("CN=\x1B[2JAda\r\x07")});
  EXPECT_EQ(sink_.text, "user       passed     CN=?[2JAda??\n");
}

TEST(DoctorJsonTest, IsOneDocumentAtTheEnd) {
  RecordedSink sink;
  ShowAll(*MakeDoctorJson(sink));
  ASSERT_EQ(sink.writes.size(), 1u);
  const auto json = nlohmann::json::parse(sink.text);
  EXPECT_EQ(json.at("format"), "larkspan-doctor");
  EXPECT_EQ(json.at("version"), 1);
  EXPECT_EQ(json.at("exitCode"), 2);
  const auto& checks = json.at("checks");
  ASSERT_EQ(checks.size(), 4u);
  EXPECT_EQ(checks[1], nlohmann::json({{"name", "library"},
                                       {"result", "warning"},
                                       {"detail", "in the current folder"},
                                       {"advice", "Move it."}}));
  EXPECT_EQ(checks[0].at("result"), "passed");
  EXPECT_EQ(checks[0].at("advice"), "");
  EXPECT_EQ(checks[2].at("result"), "failed");
  EXPECT_EQ(checks[3].at("result"), "not tried");
}

TEST(QuietDoctorTest, SaysWhatFailedAlone) {
  RecordedSink sink;
  ShowAll(*MakeQuietDoctor(sink));
  EXPECT_EQ(sink.text,
            "larkspan-console: names: of 73 that larkspan.exe needs 1 is missing: DXLExportACL. "
            "Use a machine with a newer Notes: larkspan.exe cannot work with this one.\n");
}

TEST(WrapWordsTest, BreaksBetweenWordsWhereItCan) {
  using TextLines = std::vector<std::string>;
  EXPECT_EQ(WrapWords("one two three", 7), (TextLines{"one two", "three"}));
  EXPECT_EQ(WrapWords("one two three", 8), (TextLines{"one two", "three"}));
  EXPECT_EQ(WrapWords("a verylongword b", 5), (TextLines{"a", "veryl", "ongwo", "rd b"}));
  EXPECT_EQ(WrapWords("", 5), TextLines{""});
  // Two columns each.
  EXPECT_EQ(WrapWords("\xE6\x97\xA5\xE6\x9C\xAC \xE6\x97\xA5\xE6\x9C\xAC", 8),
            (TextLines{"\xE6\x97\xA5\xE6\x9C\xAC", "\xE6\x97\xA5\xE6\x9C\xAC"}));
}

}  // namespace
}  // namespace larkspan::console
