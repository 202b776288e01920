// What is told of a bag, and the code that a judgement ends with.
#include "console/bag/BagOnly.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Utf8.h"
#include "console/bag/BagText.h"
#include "tests/console/bag/HandMadeBag.h"

namespace larkspan::console {
namespace {

ExitCode CodeOf(const HandMadeBag& bag, const std::string& below = "") {
  return RunBagOnly(WideToUtf8(bag.folder()) + below, false, true);
}

TEST(BagOnlyTest, TheCodeSaysWhetherTheBagIsValid) {
  const HandMadeBag bag;
  EXPECT_EQ(CodeOf(bag), ExitCode::kWhole);
  EXPECT_EQ(CodeOf(bag, "\\"), ExitCode::kWhole);
  EXPECT_EQ(CodeOf(bag, "\\none"), ExitCode::kCouldNotRun);
  EXPECT_EQ(CodeOf(bag, "\\bagit.txt"), ExitCode::kCouldNotRun);
  bag.Append("manifest-sha256.txt", "\n");
  EXPECT_EQ(CodeOf(bag), ExitCode::kWhole);
  bag.WriteFile("data/a.txt", "x");
  EXPECT_EQ(CodeOf(bag), ExitCode::kIncomplete);
}

TEST(BagOnlyTest, SaysInWordsWhatWasFound) {
  const HandMadeBag bag;
  EXPECT_EQ(BagText(bag.Judge()),
            "The bag is valid.\n\n  version 1.0, UTF-8, sha256\n  2 files with 9 bytes\n");
  bag.WriteFile("data/a.txt", "Alphb");
  bag.Append("manifest-sha256.txt", "\n");
  EXPECT_EQ(BagText(bag.Judge()),
            "The bag is not valid: 1 error.\n\n"
            "  version 1.0, UTF-8, sha256\n  2 files with 9 bytes\n\n"
            "Errors (1):\n"
            "  sum  data/a.txt has another content than manifest-sha256.txt tells\n\n"
            "Warnings (1):\n"
            "  uneven  manifest-sha256.txt: 1 line has nothing in it\n");
}

TEST(BagOnlyTest, PathsBringNoControlCharactersAlong) {
  const HandMadeBag bag;
  bag.Append("manifest-sha256.txt", HandMadeBag::Line("sha256", "data/\x1B[2J", "x"));
  EXPECT_EQ(BagText(bag.Judge()).find('\x1B'), std::string::npos);
}

TEST(BagOnlyTest, SaysItToMachines) {
  const HandMadeBag bag("0.97");
  bag.Remove("data/a.txt");
  const Json json = BagToJson(bag.Judge());
  EXPECT_EQ(json.at("valid"), false);
  EXPECT_EQ(json.at("version"), "0.97");
  EXPECT_EQ(json.at("algorithms").at(0), "sha256");
  EXPECT_EQ(json.at("payload").at("files"), 1);
  EXPECT_EQ(json.at("errors").at(1).at("kind"), "missing");
  EXPECT_EQ(json.at("errors").at(1).at("file"), "data/a.txt");
}

}  // namespace
}  // namespace larkspan::console
