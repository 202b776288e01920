// The lists of a bag: their lines, sums and encodings, the lists of lists, what a bag tells about
// itself, and what is to be fetched.
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "tests/console/bag/BagCase.h"
#include "tests/support/ParameterName.h"

namespace larkspan::console {
namespace {

// The sums of the payload's files in upper case.
std::string UpperCaseLine(const std::string& path, const std::string& text) {
  std::string line = HandMadeBag::Line("sha256", path, text);
  for (std::size_t i = 0; i < 64; ++i)
    line[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(line[i])));
  return line;
}

std::string LineOfA(const std::string& algorithm = "sha256") {
  return HandMadeBag::Line(algorithm, "data/a.txt", "Alpha");
}

std::string LineOfC(const std::string& algorithm = "sha256") {
  return HandMadeBag::Line(algorithm, "data/b/c.txt", "Beta");
}

// Other lists in the place of the usual one.
Change ListsBy(const std::string& algorithm, const std::string& name) {
  return [=](const HandMadeBag& bag) {
    bag.Remove(kManifest);
    bag.WriteFile(name, LineOfA(algorithm) + LineOfC(algorithm));
  };
}

// A payload file with an umlaut, and a list in that encoding whose bytes for its path are these.
Change ListsEncoded(const std::string& encoding, const std::string& umlaut) {
  return [=](const HandMadeBag& bag) {
    bag.WriteFile("bagit.txt",
                  "BagIt-Version: 1.0\nTag-File-Character-Encoding: " + encoding + "\n");
    bag.WriteFile("data/\u00E4.txt", "x");
    bag.Replace(kInfo, "9.2", "10.3");
    bag.Append(kManifest, HandMadeBag::Line("sha256", "data/" + umlaut + ".txt", "x"));
  };
}

std::string InUtf16(const std::string& ascii, bool isBigEnd) {
  std::string wide = isBigEnd ? "\xFE\xFF" : "\xFF\xFE";
  for (const char letter : ascii)
    wide += isBigEnd ? std::string{'\0', letter} : std::string{letter, '\0'};
  return wide;
}

// Without the byte order mark with which it begins.
Change CutMarks() {
  return [](const HandMadeBag& bag) {
    for (const char* name : {kManifest, kInfo}) bag.WriteFile(name, bag.ReadFile(name).substr(2));
  };
}

Change ListsInUtf16(bool isBigEnd) {
  return [=](const HandMadeBag& bag) {
    bag.WriteFile("bagit.txt", "BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-16\n");
    bag.WriteFile(kManifest, InUtf16(LineOfA() + LineOfC(), isBigEnd));
    bag.WriteFile(kInfo, InUtf16("Payload-Oxum: 9.2\n", isBigEnd));
  };
}

Change TagListed(const Change& before, const Change& after) {
  return [=](const HandMadeBag& bag) {
    before(bag);
    bag.WriteTagManifest();
    after(bag);
  };
}

const Change kNothing = [](const HandMadeBag&) {};

// A file of the payload that fetch.txt tells of with these words.
Change Fetches(const std::string& line, bool isListed = true) {
  return [=](const HandMadeBag& bag) {
    bag.WriteFile("fetch.txt", line + "\n");
    if (isListed) bag.Append(kManifest, HandMadeBag::Line("sha256", "data/far.txt", "x"));
  };
}

class JudgeListsTest : public ::testing::TestWithParam<BagCase> {};

TEST_P(JudgeListsTest, TellsWhatIsWrong) {
  const HandMadeBag bag(GetParam().version);
  GetParam().change(bag);
  EXPECT_EQ(bag.Told(), GetParam().told);
}

const std::vector<BagCase> kManifestLines = {
    {"UpperCase",
     "1.0",
     WriteOver(kManifest,
               UpperCaseLine("data/a.txt", "Alpha") + UpperCaseLine("data/b/c.txt", "Beta")),
     {}},
    {"MixedCase",
     "1.0",
     WriteOver(kManifest, LineOfA() + UpperCaseLine("data/b/c.txt", "Beta")),
     {"warning uneven"}},
    {"Tab", "1.0", ReplaceIn(kManifest, "  data/a", "\tdata/a"), {"warning uneven"}},
    {"NoLineEnd", "1.0", ReplaceIn(kManifest, "c.txt\n", "c.txt"), {}},
    {"CarriageReturns",
     "1.0",
     [](const HandMadeBag& bag) {
       bag.Replace(kManifest, "a.txt\n", "a.txt\r\n");
       bag.Replace(kManifest, "c.txt\n", "c.txt\r\n");
     },
     {}},
    {"OldMacintosh",
     "1.0",
     [](const HandMadeBag& bag) {
       bag.Replace(kManifest, "a.txt\n", "a.txt\r");
       bag.Replace(kManifest, "c.txt\n", "c.txt\r");
     },
     {}},
    {"MixedEnds", "1.0", ReplaceIn(kManifest, "a.txt\n", "a.txt\r\n"), {"warning uneven"}},
    {"EmptyLine", "1.0", AppendTo(kManifest, "\n"), {"warning uneven"}},
    {"NoSum", "1.0", AppendTo(kManifest, "data/d.txt\n"), {"manifest manifest-sha256.txt"}},
    {"NoPath",
     "1.0",
     AppendTo(kManifest, std::string(64, '0') + "\n"),
     {"manifest manifest-sha256.txt"}},
    {"ShortSum",
     "1.0",
     AppendTo(kManifest, std::string(63, '0') + "  data/d.txt\n"),
     {"manifest manifest-sha256.txt"}},
    {"NoHexadecimal",
     "1.0",
     AppendTo(kManifest, std::string(64, 'g') + "  data/d.txt\n"),
     {"manifest manifest-sha256.txt"}},
    {"Twice", "1.0", AppendTo(kManifest, LineOfA()), {"doubled data/a.txt"}},
    {"Twice097", "0.97", AppendTo(kManifest, LineOfA()), {"warning doubled"}},
    {"TwiceOtherwise097",
     "0.97",
     AppendTo(kManifest, HandMadeBag::Line("sha256", "data/a.txt", "x")),
     {"doubled data/a.txt"}},
    {"TwiceInLetterCase",
     "1.0",
     AppendTo(kManifest, HandMadeBag::Line("sha256", "data/A.txt", "Alpha")),
     {"warning alike", "warning uneven"}},
    {"ByteOrderMark",
     "1.0",
     WriteOver(kManifest, "\xEF\xBB\xBF" + LineOfA() + LineOfC()),
     {"warning byte-order-mark"}},
    {"NoUtf8",
     "1.0",
     AppendTo(kManifest, HandMadeBag::Line("sha256", "data/\xE4", "x")),
     {"encoding manifest-sha256.txt", "unlisted data/a.txt", "unlisted data/b/c.txt"}},
};

const std::vector<BagCase> kAlgorithms = {
    {"Md5", "1.0", ListsBy("md5", "manifest-md5.txt"), {}},
    {"Sha1", "0.97", ListsBy("sha1", "manifest-sha1.txt"), {}},
    {"Sha384", "1.0", ListsBy("sha384", "manifest-sha384.txt"), {}},
    {"Sha512", "1.0", ListsBy("sha512", "manifest-sha512.txt"), {}},
    {"OtherSpelling", "0.97", ListsBy("sha256", "manifest-SHA-256.txt"), {"warning letter-case"}},
    {"Unknown",
     "1.0",
     [](const HandMadeBag& bag) {
       bag.WriteFile("manifest-sha224.txt", std::string(56, '0') + "  data/a.txt\n" +
                                                std::string(56, '0') + "  data/b/c.txt\n");
     },
     {"algorithm manifest-sha224.txt"}},
    {"Two",
     "1.0",
     [](const HandMadeBag& bag) {
       bag.WriteFile("manifest-md5.txt", LineOfA("md5") + LineOfC("md5"));
     },
     {}},
    {"NotInEvery",
     "1.0",
     [](const HandMadeBag& bag) { bag.WriteFile("manifest-md5.txt", LineOfA("md5")); },
     {"unlisted data/b/c.txt"}},
    {"NotInEvery097",
     "0.97",
     [](const HandMadeBag& bag) { bag.WriteFile("manifest-md5.txt", LineOfA("md5")); },
     {}},
    {"OneOfTwoWrong",
     "0.97",
     [](const HandMadeBag& bag) {
       bag.WriteFile("manifest-md5.txt", HandMadeBag::Line("md5", "data/a.txt", "x"));
     },
     {"sum data/a.txt"}},
    {"NoManifestButAlike",
     "1.0",
     [](const HandMadeBag& bag) { bag.Rename(kManifest, "manifest-sha256.txt.bak"); },
     {"no-manifest"}},
};

const std::vector<BagCase> kEncodings = {
    {"Latin1", "1.0", ListsEncoded("ISO-8859-1", "\xE4"), {}},
    {"Windows1252", "1.0", ListsEncoded("windows-1252", "\xE4"), {}},
    {"Dos850", "1.0", ListsEncoded("ibm850", "\x84"), {}},
    {"Utf8", "1.0", ListsEncoded("UTF-8", "\u00E4"), {}},
    {"Utf16", "1.0", ListsInUtf16(false), {}},
    {"Utf16BigEnd", "1.0", ListsInUtf16(true), {}},
    {"Utf16WithoutMark",
     "1.0",
     [](const HandMadeBag& bag) {
       ListsInUtf16(false)(bag);
       CutMarks()(bag);
     },
     {}},
    {"Utf16BigEndWithoutMark",
     "1.0",
     [](const HandMadeBag& bag) {
       ListsInUtf16(true)(bag);
       CutMarks()(bag);
     },
     {}},
    {"Utf16WithWrongOrder",
     "1.0",
     [](const HandMadeBag& bag) {
       ListsInUtf16(false)(bag);
       bag.Replace("bagit.txt", "UTF-16", "UTF-16BE");
     },
     {}},
};

const std::vector<BagCase> kTagLists = {
    {"Changed", "1.0", TagListed(kNothing, AppendTo(kInfo, "More: x\n")), {"sum bag-info.txt"}},
    {"ChangedDeclaration",
     "1.0",
     TagListed(kNothing,
               DeclaresAs("BagIt-Version: 1.0\r\nTag-File-Character-Encoding: UTF-8\r\n")),
     {"sum bagit.txt"}},
    {"OtherTagFile",
     "1.0",
     TagListed(WriteOver("notes.txt", "x"), WriteOver("notes.txt", "y")),
     {"sum notes.txt"}},
    {"MissingTagFile",
     "1.0",
     TagListed(WriteOver("notes.txt", "x"),
               [](const HandMadeBag& bag) { bag.Remove("notes.txt"); }),
     {"missing notes.txt"}},
    {"Escaping",
     "1.0",
     TagListed(kNothing, AppendTo("tagmanifest-sha256.txt", LineOfA().replace(66, 4, ".."))),
     {"unsafe-path ../a.txt"}},
    {"ListsPayload",
     "1.0",
     TagListed(kNothing, AppendTo("tagmanifest-sha256.txt", LineOfA())),
     {"warning manifest"}},
    {"ListsItself",
     "1.0",
     TagListed(kNothing, AppendTo("tagmanifest-sha256.txt",
                                  HandMadeBag::Line("sha256", "tagmanifest-sha256.txt", ""))),
     {"manifest tagmanifest-sha256.txt", "sum tagmanifest-sha256.txt"}},
    {"ListsAnother097",
     "0.97",
     [](const HandMadeBag& bag) {
       bag.WriteTagManifest();
       bag.WriteFile("tagmanifest-md5.txt",
                     HandMadeBag::Line("md5", "tagmanifest-sha256.txt",
                                       bag.ReadFile("tagmanifest-sha256.txt")) +
                         HandMadeBag::Line("md5", kManifest, bag.ReadFile(kManifest)) +
                         HandMadeBag::Line("md5", kInfo, bag.ReadFile(kInfo)) +
                         HandMadeBag::Line("md5", "bagit.txt", bag.ReadFile("bagit.txt")));
     },
     {"warning manifest"}},
    {"ManifestUnlisted",
     "1.0",
     WriteOver("tagmanifest-md5.txt",
               HandMadeBag::Line("md5", "bagit.txt",
                                 "BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8\n")),
     {"unlisted manifest-sha256.txt", "warning unlisted"}},
    {"ManifestUnlisted097",
     "0.97",
     WriteOver("tagmanifest-md5.txt",
               HandMadeBag::Line("md5", "bagit.txt",
                                 "BagIt-Version: 0.97\nTag-File-Character-Encoding: UTF-8\n")),
     {"warning unlisted", "warning unlisted"}},
};

const std::vector<BagCase> kInfos = {
    {"Folded",
     "1.0",
     WriteOver(kInfo, "External-Description: a long\n  text\n\tof three\nPayload-Oxum: 9.2\n"),
     {}},
    {"Repeated", "1.0", WriteOver(kInfo, "Contact-Name: a\nContact-Name: b\n"), {}},
    {"OxumInAnyCase", "1.0", WriteOver(kInfo, "PAYLOAD-OXUM: 9.3\n"), {"oxum bag-info.txt"}},
    {"OxumBytes", "1.0", WriteOver(kInfo, "Payload-Oxum: 8.2\n"), {"oxum bag-info.txt"}},
    {"OxumIsNone", "1.0", WriteOver(kInfo, "Payload-Oxum: nine\n"), {"oxum bag-info.txt"}},
    {"OxumTwice",
     "1.0",
     WriteOver(kInfo, "Payload-Oxum: 9.2\nPayload-Oxum: 9.2\n"),
     {"oxum bag-info.txt"}},
    {"NoColon", "1.0", WriteOver(kInfo, "Contact-Name\n"), {"bag-info bag-info.txt"}},
    {"BlankBeforeColon", "1.0", WriteOver(kInfo, "Contact-Name : a\n"), {"bag-info bag-info.txt"}},
    {"BlankBeforeColon097", "0.97", WriteOver(kInfo, "Contact-Name  :  a\n"), {}},
    {"NoBlank", "1.0", WriteOver(kInfo, "Contact-Name:a\n"), {"bag-info bag-info.txt"}},
    {"NoValue", "1.0", WriteOver(kInfo, "Contact-Name:\n"), {}},
    {"FoldedFromNothing", "1.0", WriteOver(kInfo, "  text\n"), {"bag-info bag-info.txt"}},
    {"OddDate", "1.0", WriteOver(kInfo, "Bagging-Date: 1.2.2026\n"), {"warning bag-info"}},
    {"Date", "1.0", WriteOver(kInfo, "Bagging-Date: 2026-11-22\n"), {}},
    {"EarlyName",
     "0.95",
     [](const HandMadeBag& bag) {
       bag.Remove(kInfo);
       bag.WriteFile("package-info.txt", "Payload-Oxum: 1.1\n");
     },
     {"oxum bag-info.txt"}},
};

const std::vector<BagCase> kFetches = {
    {"NotFetched",
     "1.0",
     Fetches("https://example.com/far 1 data/far.txt"),
     {"not-fetched data/far.txt"}},
    {"Fetched",
     "1.0",
     [](const HandMadeBag& bag) {
       Fetches("https://example.com/far - data/far.txt")(bag);
       bag.WriteFile("data/far.txt", "x");
       bag.Replace(kInfo, "9.2", "10.3");
     },
     {}},
    {"OtherLength", "1.0", Fetches("https://example.com/a 6 data/a.txt", false), {"warning fetch"}},
    {"Unlisted",
     "1.0",
     Fetches("https://example.com/far 1 data/far.txt", false),
     {"fetch data/far.txt"}},
    {"Unlisted097",
     "0.97",
     Fetches("https://example.com/far 1 data/far.txt", false),
     {"fetch data/far.txt"}},
    {"NotInEvery097",
     "0.97",
     [](const HandMadeBag& bag) {
       bag.WriteFile("fetch.txt", "https://example.com/a - data/a.txt\n");
       bag.WriteFile("manifest-md5.txt", LineOfC("md5"));
     },
     {}},
    {"Escaping",
     "1.0",
     Fetches("https://example.com/far 1 data/../../far.txt", false),
     {"unsafe-path data/../../far.txt"}},
    {"Absolute",
     "1.0",
     Fetches("https://example.com/far 1 /etc/far.txt", false),
     {"unsafe-path /etc/far.txt"}},
    {"TagFile",
     "1.0",
     Fetches("https://example.com/far 1 bag-info.txt", false),
     {"outside-payload bag-info.txt"}},
    {"RelativeAddress", "1.0", Fetches("far.txt 1 data/a.txt", false), {"fetch fetch.txt"}},
    {"NoLength", "1.0", Fetches("https://example.com/a data/a.txt", false), {"fetch fetch.txt"}},
};

INSTANTIATE_TEST_SUITE_P(Lines, JudgeListsTest, ::testing::ValuesIn(kManifestLines), kNameOf);
INSTANTIATE_TEST_SUITE_P(Algorithms, JudgeListsTest, ::testing::ValuesIn(kAlgorithms), kNameOf);
INSTANTIATE_TEST_SUITE_P(Encodings, JudgeListsTest, ::testing::ValuesIn(kEncodings), kNameOf);
INSTANTIATE_TEST_SUITE_P(TagLists, JudgeListsTest, ::testing::ValuesIn(kTagLists), kNameOf);
INSTANTIATE_TEST_SUITE_P(Infos, JudgeListsTest, ::testing::ValuesIn(kInfos), kNameOf);
INSTANTIATE_TEST_SUITE_P(Fetches, JudgeListsTest, ::testing::ValuesIn(kFetches), kNameOf);

}  // namespace
}  // namespace larkspan::console
