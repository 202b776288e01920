// Every XML file of every kept tree.
#include <algorithm>
#include <stdexcept>

#include "tests/support/xml/Xml.h"
#include "tests/xml/XmlTest.h"

namespace larkspan {

namespace {

class WellFormedTest : public TreeTest {};

TEST(WellFormedTreesTest, TheTreesOfAllKindsAreFound) {
  std::vector<std::string> names;
  for (const Tree& tree : AllTrees()) names.push_back(tree.name);
  for (const char* name : {"damaged-archive", "damaged-plain", "damaged-views-archive",
                           "empty-archive", "empty-plain", "sample-archive", "sample-plain"}) {
    EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
  }
}

TEST(WellFormedTreesTest, AFileThatEndsEarlyIsNotWellFormed) {
  EXPECT_NO_THROW(ParseXml("<view><total/></view>\r\n"));
  for (const char* file : {"", "<view>", "<view><total></view>", "<view/><view/>", "<a b=c/>"}) {
    EXPECT_THROW(ParseXml(file), std::runtime_error) << file;
  }
}

TEST_P(WellFormedTest, EveryFileIs) {
  for (const std::filesystem::path& file : XmlFilesOf(GetParam())) {
    EXPECT_NO_THROW(ParseXml(ReadWholeFile(file))) << file;
  }
}

// What is wrong with the line ends of a file; empty when each is a carriage return and a line feed.
std::string LineEndFault(const std::string& file) {
  if (!file.ends_with("\r\n")) return "the last line does not end";
  for (std::size_t at = 0; (at = file.find_first_of("\r\n", at)) != std::string::npos; at += 2) {
    if (file.compare(at, 2, "\r\n") != 0) return "half a line end at byte " + std::to_string(at);
  }
  return "";
}

TEST_P(WellFormedTest, EveryLineEndsInCarriageReturnAndLineFeed) {
  for (const std::filesystem::path& file : XmlFilesOf(GetParam())) {
    EXPECT_EQ(LineEndFault(ReadWholeFile(file)), "") << file;
  }
}

INSTANTIATE_TEST_SUITE_P(Trees, WellFormedTest, ::testing::ValuesIn(AllTrees()), TreeTestName);

}  // namespace

}  // namespace larkspan
