#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/ParameterName.h"
#include "tests/support/SettingsText.h"

namespace larkspan {
namespace {

using Arguments = std::vector<std::wstring>;

ParsedCommandLine Parse(const Arguments& afterProgram) {
  Arguments arguments = {L"larkspan.exe"};
  arguments.insert(arguments.end(), afterProgram.begin(), afterProgram.end());
  return ParseCommandLine(arguments);
}

struct Accepted {
  std::string name;
  Arguments arguments;
  std::vector<std::wstring> changed;  // The settings that differ from the defaults.
};

struct Refused {
  std::string name;
  Arguments arguments;
  std::string fault;
};

class AcceptedCommandLine : public testing::TestWithParam<Accepted> {};

TEST_P(AcceptedCommandLine, ChangesTheseSettingsAndNoOther) {
  const ParsedCommandLine line = Parse(GetParam().arguments);
  EXPECT_TRUE(line.accepted);
  EXPECT_EQ(ChangedSettings(line.settings), GetParam().changed);
}

INSTANTIATE_TEST_SUITE_P(
    EveryOption, AcceptedCommandLine,
    testing::Values(Accepted{"None", {}, {}},
                    Accepted{"Server", {L"-s", L"Mail/Org"}, {L"server=Mail/Org"}},
                    Accepted{"Database", {L"-p", L"a\\b.nsf"}, {L"databasePath=a\\b.nsf"}},
                    Accepted{"OutputFolder", {L"-o", L"C:\\out"}, {L"outputFolder=C:\\out"}},
                    Accepted{"ResumeNoteId", {L"-l", L"000012F6"}, {L"resumeNoteId=000012F6"}},
                    Accepted{"Pipe", {L"-pipe", L"1234"}, {L"progressPipe=1234"}},
                    Accepted{"Archive", {L"-archive"}, {L"archive"}},
                    Accepted{"Scan", {L"-scan"}, {L"scan"}},
                    Accepted{"FullAccess", {L"-fullaccess"}, {L"fullAccess"}},
                    Accepted{"Servers", {L"-servers"}, {L"servers"}},
                    Accepted{"IdFile", {L"-id", L"C:\\user.id"}, {L"idFile=C:\\user.id"}},
                    Accepted{"Password", {L"-password", L"pass word"}, {L"idPassword=pass word"}},
                    Accepted{"NoView", {L"-noview"}, {L"noViews"}},
                    Accepted{"Debug", {L"-debug"}, {L"minimumLogLevel=0"}}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    WithoutRegardToCase, AcceptedCommandLine,
    testing::Values(Accepted{"Server", {L"-S", L"Mail"}, {L"server=Mail"}},
                    Accepted{"Database", {L"-P", L"A.nsf"}, {L"databasePath=A.nsf"}},
                    Accepted{"OutputFolder", {L"-O", L"Out"}, {L"outputFolder=Out"}},
                    Accepted{"ResumeNoteId", {L"-L", L"2A"}, {L"resumeNoteId=0000002A"}},
                    Accepted{"Pipe", {L"-PIPE", L"5"}, {L"progressPipe=5"}},
                    Accepted{"Archive", {L"-Archive"}, {L"archive"}},
                    Accepted{"Scan", {L"-SCAN"}, {L"scan"}},
                    Accepted{"FullAccess", {L"-FullAccess"}, {L"fullAccess"}},
                    Accepted{"Servers", {L"-SERVERS"}, {L"servers"}},
                    Accepted{"IdFile", {L"-Id", L"U.id"}, {L"idFile=U.id"}},
                    Accepted{"Password", {L"-passWord", L"SeCret"}, {L"idPassword=SeCret"}},
                    Accepted{"NoView", {L"-noView"}, {L"noViews"}},
                    Accepted{"Debug", {L"-DEBUG"}, {L"minimumLogLevel=0"}}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    ValuesAsTheyStand, AcceptedCommandLine,
    testing::Values(Accepted{"AnOptionWord", {L"-s", L"-archive"}, {L"server=-archive"}},
                    Accepted{"ItsOwnWord", {L"-p", L"-p"}, {L"databasePath=-p"}},
                    Accepted{"TheHelpWord", {L"-o", L"-h"}, {L"outputFolder=-h"}},
                    Accepted{
                        "ParsingGoesOnBehind", {L"-s", L"-h", L"-scan"}, {L"server=-h", L"scan"}},
                    Accepted{"Empty", {L"-s", L"", L"-archive"}, {L"archive"}},
                    Accepted{"EmptyAfterAnother", {L"-s", L"Mail", L"-s", L""}, {}},
                    Accepted{"SpacesAndQuotes", {L"-password", L" a\"b "}, {L"idPassword= a\"b "}},
                    Accepted{"BeyondAscii",
                             {L"-p", L"\u00E9\u03A9\\\u65E5.nsf"},
                             {L"databasePath=\u00E9\u03A9\\\u65E5.nsf"}}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    LastOneCounts, AcceptedCommandLine,
    testing::Values(Accepted{"Text", {L"-o", L"a", L"-O", L"b"}, {L"outputFolder=b"}},
                    Accepted{"Number", {L"-l", L"1", L"-l", L"2"}, {L"resumeNoteId=00000002"}},
                    Accepted{"Pipe", {L"-pipe", L"8", L"-pipe", L"9"}, {L"progressPipe=9"}},
                    Accepted{"Flag", {L"-archive", L"-archive"}, {L"archive"}}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    ResumeNoteIds, AcceptedCommandLine,
    testing::Values(
        Accepted{"Zero", {L"-l", L"0"}, {L"resumeNoteId=00000000"}},
        Accepted{"EightZeros", {L"-l", L"00000000"}, {L"resumeNoteId=00000000"}},
        Accepted{"NoNote", {L"-l", L"FFFFFFFF"}, {}},
        Accepted{"LowerCase", {L"-l", L"abcdef"}, {L"resumeNoteId=00ABCDEF"}},
        Accepted{"TopBit", {L"-l", L"80000004"}, {L"resumeNoteId=80000004"}},
        Accepted{"HexadecimalPrefix", {L"-l", L"0x2A"}, {L"resumeNoteId=0000002A"}},
        Accepted{"TextBehindNumber", {L"-l", L"2A.nsf"}, {L"resumeNoteId=0000002A"}},
        Accepted{"NoNumber", {L"-l", L"xyz"}, {}}, Accepted{"EmptyText", {L"-l", L""}, {}},
        Accepted{"NoNumberAfterNumber", {L"-l", L"5", L"-l", L"?"}, {L"resumeNoteId=00000005"}},
        Accepted{"AnOptionWord", {L"-l", L"-scan", L"-archive"}, {L"archive"}}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    PipeHandles, AcceptedCommandLine,
    testing::Values(
        Accepted{"Zero", {L"-pipe", L"0"}, {L"progressPipe=0"}},
        Accepted{"NoPipe", {L"-pipe", L"-1"}, {}},
        Accepted{"Negative", {L"-pipe", L"-12"}, {L"progressPipe=-12"}},
        Accepted{
            "Largest", {L"-pipe", L"9223372036854775807"}, {L"progressPipe=9223372036854775807"}},
        Accepted{"Smallest",
                 {L"-pipe", L"-9223372036854775808"},
                 {L"progressPipe=-9223372036854775808"}},
        Accepted{"DecimalOnly", {L"-pipe", L"10F"}, {L"progressPipe=10"}},
        Accepted{"NoHexadecimalPrefix", {L"-pipe", L"0x10"}, {L"progressPipe=0"}},
        Accepted{"NoOctalPrefix", {L"-pipe", L"010"}, {L"progressPipe=10"}},
        Accepted{"NoNumber", {L"-pipe", L"abc"}, {}},
        Accepted{"NoNumberAfterNumber", {L"-pipe", L"7", L"-pipe", L""}, {L"progressPipe=7"}}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    RuntimeArguments, AcceptedCommandLine,
    testing::Values(
        Accepted{"First", {L"=C:\\notes.ini", L"-scan"}, {L"scan", L"runtime==C:\\notes.ini"}},
        Accepted{"Last", {L"-scan", L"=a"}, {L"scan", L"runtime==a"}},
        Accepted{"Alone", {L"="}, {L"runtime=="}},
        Accepted{"BeforeOption", {L"=-o", L"-archive"}, {L"archive", L"runtime==-o"}},
        Accepted{"Several", {L"=b", L"-scan", L"=a"}, {L"scan", L"runtime==b", L"runtime==a"}},
        Accepted{"AsValue", {L"-s", L"=x", L"-archive"}, {L"server==x", L"archive", L"runtime==x"}},
        Accepted{"AsUnparsableValue", {L"-l", L"=5"}, {L"runtime==5"}}),
    kNameOf);

class RefusedCommandLine : public testing::TestWithParam<Refused> {};

TEST_P(RefusedCommandLine, IsNotAcceptedAndNamesTheFault) {
  const ParsedCommandLine line = Parse(GetParam().arguments);
  EXPECT_FALSE(line.accepted);
  EXPECT_EQ(line.fault, GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(
    UnknownWord, RefusedCommandLine,
    testing::Values(Refused{"LongerThanAnOption", {L"-out", L"x"}, "Invalid parameter '-out'"},
                    Refused{"ShorterThanAnOption", {L"-arch"}, "Invalid parameter '-arch'"},
                    Refused{"NoHyphen", {L"archive"}, "Invalid parameter 'archive'"},
                    Refused{"HyphenAlone", {L"-"}, "Invalid parameter '-'"},
                    Refused{"TwoHyphens", {L"--archive"}, "Invalid parameter '--archive'"},
                    Refused{"Slash", {L"/o", L"x"}, "Invalid parameter '/o'"},
                    Refused{"SpaceBehind", {L"-scan "}, "Invalid parameter '-scan '"},
                    Refused{"ValueJoinedByEqualSign", {L"-o=x"}, "Invalid parameter '-o=x'"},
                    Refused{"Empty", {L""}, "Invalid parameter ''"},
                    Refused{"EmptyBehindFlag", {L"-archive", L""}, "Invalid parameter ''"},
                    Refused{"BehindFlag", {L"-archive", L"yes"}, "Invalid parameter 'yes'"},
                    Refused{"OfTwentyCharacters",
                            {L"12345678901234567890"},
                            "Invalid parameter '12345678901234567890'"},
                    Refused{"OfTwentyOneCharacters",
                            {L"-23456789012345678901"},
                            "Invalid parameter '-2345678901234567890'"},
                    Refused{"FirstOfTwo", {L"-first", L"-second"}, "Invalid parameter '-first'"},
                    Refused{"BeforeHelp", {L"-wrong", L"-h"}, "Invalid parameter '-wrong'"}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    MissingValue, RefusedCommandLine,
    testing::Values(Refused{"Server", {L"-s"}, "Invalid parameter '-s'"},
                    Refused{"Database", {L"-p"}, "Invalid parameter '-p'"},
                    Refused{"OutputFolder", {L"-O"}, "Invalid parameter '-O'"},
                    Refused{"ResumeNoteId", {L"-l"}, "Invalid parameter '-l'"},
                    Refused{"Pipe", {L"-pipe"}, "Invalid parameter '-pipe'"},
                    Refused{"IdFile", {L"-id"}, "Invalid parameter '-id'"},
                    Refused{"Password", {L"-password"}, "Invalid parameter '-password'"},
                    Refused{"BehindAValue", {L"-p", L"a.nsf", L"-s"}, "Invalid parameter '-s'"}),
    kNameOf);

INSTANTIATE_TEST_SUITE_P(
    HelpEndsParsingAtOnce, RefusedCommandLine,
    testing::Values(Refused{"Help", {L"-h"}, ""}, Refused{"UpperCase", {L"-H"}, ""},
                    Refused{"QuestionMark", {L"-?"}, ""},
                    Refused{"BeforeUnknownWord", {L"-h", L"-wrong"}, ""},
                    Refused{"BeforeMissingValue", {L"-?", L"-o"}, ""},
                    Refused{"AtTheEnd", {L"-p", L"a.nsf", L"-o", L"out", L"-archive", L"-h"}, ""}),
    kNameOf);

TEST(CommandLineTest, OptionsBehindHelpAreNotRead) {
  EXPECT_FALSE(Parse({L"-h", L"-archive"}).settings.archive);
}

TEST(CommandLineTest, OptionsBehindAnInvalidParameterAreNotRead) {
  EXPECT_FALSE(Parse({L"-wrong", L"-archive"}).settings.archive);
}

TEST(CommandLineTest, InvalidParameterBeyondAsciiIsRefused) {
  EXPECT_FALSE(Parse({L"\u65E5\u672C"}).accepted);
}

TEST(CommandLineTest, InvalidParameterOfAnyLengthIsRefused) {
  EXPECT_FALSE(Parse({std::wstring(30000, L'x')}).accepted);
}

TEST(CommandLineTest, VersionIsNotAskedForByDefault) {
  EXPECT_FALSE(Parse({L"-archive"}).showVersion);
}

TEST(CommandLineTest, VersionIsAskedForByEitherWordInAnyCase) {
  for (const wchar_t* word : {L"-v", L"-V", L"-version", L"-Version"}) {
    EXPECT_TRUE(Parse({word}).showVersion) << word;
  }
}

TEST(CommandLineTest, VersionChangesNoSetting) {
  EXPECT_TRUE(ChangedSettings(Parse({L"-version"}).settings).empty());
}

TEST(CommandLineTest, ParsingGoesOnBehindVersion) {
  EXPECT_FALSE(Parse({L"-v", L"-wrong"}).accepted);
}

TEST(CommandLineTest, FirstArgumentIsTheProgramWhateverItSays) {
  const ParsedCommandLine line = ParseCommandLine({L"-h", L"-scan"});
  EXPECT_TRUE(line.accepted);
  EXPECT_EQ(line.settings.programPath, L"-h");
}

TEST(CommandLineTest, FirstArgumentIsNoRuntimeArgument) {
  EXPECT_TRUE(ParseCommandLine({L"=program"}).settings.runtimeArguments.empty());
}

TEST(CommandLineTest, EmptyArgumentVectorIsAccepted) { EXPECT_TRUE(ParseCommandLine({}).accepted); }

TEST(CommandLineTest, AllOptionsOfOneExportAreRead) {
  const ParsedCommandLine line =
      Parse({L"=notes.ini", L"-s", L"Mail", L"-p", L"a.nsf", L"-o", L"out", L"-archive", L"-noview",
             L"-fullaccess", L"-pipe", L"44", L"-debug", L"-l", L"1A"});
  EXPECT_TRUE(line.accepted);
  EXPECT_EQ(ChangedSettings(line.settings),
            (std::vector<std::wstring>{L"server=Mail", L"databasePath=a.nsf", L"outputFolder=out",
                                       L"resumeNoteId=0000001A", L"progressPipe=44", L"archive",
                                       L"fullAccess", L"noViews", L"minimumLogLevel=0",
                                       L"runtime==notes.ini"}));
}

}  // namespace
}  // namespace larkspan
