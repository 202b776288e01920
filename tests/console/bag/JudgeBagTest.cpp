// Bags made by hand, each with one thing that is odd or wrong about it.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "console/bag/BagPath.h"
#include "console/text/Utf.h"
#include "tests/console/bag/BagCase.h"
#include "tests/console/bag/HandMadeBag.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ParameterName.h"

namespace larkspan::console {
namespace {

class JudgeBagTest : public ::testing::TestWithParam<BagCase> {};

TEST_P(JudgeBagTest, TellsWhatIsWrong) {
  const HandMadeBag bag(GetParam().version);
  GetParam().change(bag);
  EXPECT_EQ(bag.Told(), GetParam().told);
}

const std::vector<BagCase> kPlainBags = {
    {"Whole", "1.0", [](const HandMadeBag&) {}, {}},
    {"Whole097", "0.97", [](const HandMadeBag&) {}, {}},
    {"Whole093", "0.93", [](const HandMadeBag&) {}, {}},
    {"WholeWithTagManifest", "1.0", [](const HandMadeBag& bag) { bag.WriteTagManifest(); }, {}},
    {"WithoutInfo", "1.0", [](const HandMadeBag& bag) { bag.Remove(kInfo); }, {}},
    {"OtherTagFile", "1.0", WriteOver("notes/remarks.txt", "x"), {}},
    {"EmptyPayload",
     "1.0",
     [](const HandMadeBag& bag) {
       bag.Remove("data/a.txt");
       bag.Remove("data/b/c.txt");
       bag.WriteFile(kManifest, "");
       bag.WriteFile(kInfo, "Payload-Oxum: 0.0\n");
     },
     {}},
    {"CarriageReturns",
     "1.0",
     DeclaresAs("BagIt-Version: 1.0\r\nTag-File-Character-Encoding: UTF-8\r\n"),
     {}},
    {"NoPayloadFolder",
     "1.0",
     [](const HandMadeBag& bag) {
       bag.Remove("data");
       bag.WriteFile(kManifest, "");
       bag.Remove(kInfo);
     },
     {"no-payload data"}},
    {"NoManifest", "1.0", [](const HandMadeBag& bag) { bag.Remove(kManifest); }, {"no-manifest"}},
    {"FlippedByte", "1.0", WriteOver("data/a.txt", "Alphb"), {"sum data/a.txt"}},
    {"FlippedByte097", "0.97", WriteOver("data/a.txt", "Alphb"), {"sum data/a.txt"}},
    {"FileMissing",
     "1.0",
     [](const HandMadeBag& bag) { bag.Remove("data/a.txt"); },
     {"oxum bag-info.txt", "missing data/a.txt"}},
    {"FileUnlisted",
     "1.0",
     WriteOver("data/d.txt", ""),
     {"oxum bag-info.txt", "unlisted data/d.txt"}},
};

const std::vector<BagCase> kDeclarations = {
    {"Missing",
     "1.0",
     [](const HandMadeBag& bag) { bag.Remove("bagit.txt"); },
     {"declaration bagit.txt"}},
    {"ByteOrderMark",
     "1.0",
     DeclaresAs("\xEF\xBB\xBF"
                "BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8\n"),
     {"declaration bagit.txt"}},
    {"ByteOrderMark097",
     "0.97",
     DeclaresAs("\xEF\xBB\xBF"
                "BagIt-Version: 0.97\nTag-File-Character-Encoding: UTF-8\n"),
     {"declaration bagit.txt"}},
    {"NoEncoding", "1.0", DeclaresAs("BagIt-Version: 1.0\n"), {"declaration bagit.txt"}},
    {"OtherOrder",
     "1.0",
     DeclaresAs("Tag-File-Character-Encoding: UTF-8\nBagIt-Version: 1.0\n"),
     {"declaration bagit.txt", "declaration bagit.txt"}},
    {"ThirdLine",
     "1.0",
     DeclaresAs("BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8\nMore: x\n"),
     {"declaration bagit.txt"}},
    {"EmptyThirdLine",
     "1.0",
     DeclaresAs("BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8\n\n"),
     {"declaration bagit.txt"}},
    {"EmptyThirdLine097",
     "0.97",
     DeclaresAs("BagIt-Version: 0.97\nTag-File-Character-Encoding: UTF-8\n\n"),
     {"warning declaration"}},
    {"Blanks",
     "1.0",
     DeclaresAs("BagIt-Version : 1.0\nTag-File-Character-Encoding:  UTF-8\n"),
     {"declaration bagit.txt"}},
    {"Blanks097",
     "0.97",
     DeclaresAs("BagIt-Version : 0.97\nTag-File-Character-Encoding:  UTF-8\n"),
     {"warning declaration"}},
    {"Version2", "2.0", [](const HandMadeBag&) {}, {"version bagit.txt"}},
    {"Version098", "0.98", [](const HandMadeBag&) {}, {"version bagit.txt"}},
    {"NoVersion", "one", [](const HandMadeBag&) {}, {"declaration bagit.txt"}},
    {"LowerCaseEncoding",
     "1.0",
     DeclaresAs("BagIt-Version: 1.0\nTag-File-Character-Encoding: utf-8\n"),
     {}},
    {"UnknownEncoding",
     "1.0",
     DeclaresAs("BagIt-Version: 1.0\nTag-File-Character-Encoding: x-none\n"),
     {"encoding bagit.txt"}},
    {"NoUtf8",
     "1.0",
     DeclaresAs("BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8\xE4\n"),
     {"declaration bagit.txt"}},
    {"NoLineEnd", "1.0", DeclaresAs("BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8"), {}},
};

const std::vector<BagCase> kPaths = {
    {"Absolute", "1.0", ListsPath("/etc/hosts"), {"unsafe-path /etc/hosts"}},
    {"Escaping", "1.0", ListsPath("data/../../a"), {"unsafe-path data/../../a"}},
    {"Escaping097",
     "0.97",
     ListsPath("data\\..\\..\\a"),
     {"unsafe-path data/../../a", "warning uneven"}},
    {"Drive", "1.0", ListsPath("C:/a"), {"unsafe-path C:/a"}},
    {"Network", "1.0", ListsPath("\\\\server\\share\\a"), {"unsafe-path \\\\server\\share\\a"}},
    {"Network097", "0.97", ListsPath("\\\\server\\a"), {"unsafe-path \\\\server\\a"}},
    {"Home", "1.0", ListsPath("~root/a"), {"unsafe-path ~root/a"}},
    {"Device", "1.0", ListsPath("data/nul"), {"unsafe-path data/nul"}},
    {"Stream", "1.0", ListsPath("data/a.txt:b"), {"unsafe-path data/a.txt:b"}},
    {"EncodedEscape", "1.0", ListsPath("data/%2e%2e/a"), {"missing data/%2e%2e/a"}},
    {"Outside", "1.0", ListsPath("bagit.txt"), {"outside-payload bagit.txt"}},
    {"Backslash", "1.0", ListsPath("data\\a.txt"), {"unsafe-path data\\a.txt"}},
    {"Missing", "1.0", ListsPath("data/none"), {"missing data/none"}},
    {"PercentEncoded", "1.0", ListsFileAs("data/100%.txt", "data/100%25.txt"), {}},
    {"PercentBare", "1.0", ListsFileAs("data/100%.txt", "data/100%.txt"), {}},
    {"PercentCodeBare", "1.0", ListsFileAs("data/%25.txt", "data/%25.txt"), {"warning uneven"}},
    {"Percent097", "0.97", ListsFileAs("data/%25.txt", "data/%25.txt"), {}},
    {"PercentEncoded097",
     "0.97",
     ListsFileAs("data/100%.txt", "data/100%25.txt"),
     {"warning uneven"}},
    {"Umlaut",
     "1.0",
     ListsFileAs("data/\u00C4\u65E5\u672C.txt", "data/\u00C4\u65E5\u672C.txt"),
     {}},
    {"OtherNormalisation",
     "1.0",
     ListsFileAs("data/\u00E4.txt", "data/a\u0308.txt"),
     {"warning uneven"}},
    {"OtherLetterCase", "1.0", ListsFileAs("data/D.txt", "data/d.txt"), {"warning uneven"}},
    {"DotSlash", "1.0", ListsFileAs("data/d.txt", "./data/d.txt"), {"warning uneven"}},
    {"Star", "0.97", ListsFileAs("data/d.txt", "*data/d.txt"), {"warning uneven"}},
    {"Backslash097", "0.97", ListsFileAs("data/d/e.txt", "data\\d\\e.txt"), {"warning uneven"}},
    {"DotAtTheEndOfNothing", "1.0", ListsPath("data/a.txt."), {"unsafe-path data/a.txt."}},
    {"BlankInName", "1.0", ListsFileAs("data/d  e.txt", "data/d  e.txt"), {}},
    {"LongName",
     "1.0",
     ListsFileAs("data/" + std::string(120, 'n') + "/" + std::string(120, 'm') + ".txt",
                 "data/" + std::string(120, 'n') + "/" + std::string(120, 'm') + ".txt"),
     {}},
};

struct OddName {
  std::string name;
  Lines told;
};

class OddNameTest : public ::testing::TestWithParam<OddName> {};

// Only a path without limits reaches the file.
TEST_P(OddNameTest, AFileThatTheFolderListsLiesInIt) {
  const HandMadeBag bag;
  const std::wstring path = UnlimitedPath(bag.folder()) + L"\\data\\" + Utf8ToWide(GetParam().name);
  WriteBytes(path, "x");
  bag.Append(kManifest, HandMadeBag::Line("sha256", "data/" + GetParam().name, "x"));
  bag.Replace(kInfo, "9.2", "10.3");
  EXPECT_EQ(bag.Told(), GetParam().told);
  EXPECT_TRUE(DeleteFileW(path.c_str()));
}

INSTANTIATE_TEST_SUITE_P(
    Names, OddNameTest,
    ::testing::Values(OddName{"d.", {"warning uneven"}}, OddName{"d ", {"warning uneven"}},
                      OddName{"aux.c", {"unsafe-path data/aux.c", "unlisted data/aux.c"}}));
INSTANTIATE_TEST_SUITE_P(Plain, JudgeBagTest, ::testing::ValuesIn(kPlainBags), kNameOf);
INSTANTIATE_TEST_SUITE_P(Declarations, JudgeBagTest, ::testing::ValuesIn(kDeclarations), kNameOf);
INSTANTIATE_TEST_SUITE_P(Paths, JudgeBagTest, ::testing::ValuesIn(kPaths), kNameOf);

}  // namespace
}  // namespace larkspan::console
