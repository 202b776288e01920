// A thousand damages to a sealed export, each of which must be noticed: a byte that is another one,
// a file that is cut, longer, gone, added, renamed or that changed places with another.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "console/bag/Bag.h"
#include "console/bag/Seal.h"
#include "console/text/Utf.h"
#include "tests/console/account/HandMadeExport.h"
#include "tests/support/OutputTree.h"

namespace larkspan::console {
namespace {

class BagDamageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    export_.Write();
    ASSERT_EQ(SealFolder(export_.folder(), {}).code, ExitCode::kWhole);
    for (const auto& [name, content] : testing::ReadOutputTree(export_.folder()))
      if (!name.ends_with('/')) files_.emplace_back(name, content);
    ASSERT_EQ(ToldOfBag(), "");
  }

  std::size_t Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }

  const std::pair<std::string, std::string>& AnyFile() { return files_[Below(files_.size())]; }

  // The first thing that is told of the bag; empty when it is as it was.
  std::string ToldOfBag() const {
    std::string whyNot;
    const std::optional<BagVerdict> verdict = JudgeBag(export_.folder(), {}, whyNot);
    if (!verdict) return whyNot;
    if (!verdict->errors.empty()) return verdict->errors.front().text;
    return verdict->warnings.empty() ? "" : verdict->warnings.front().text;
  }

  HandMadeExport export_;
  std::vector<std::pair<std::string, std::string>> files_;
  std::mt19937 random_{20261122};
};

TEST_F(BagDamageTest, EachOfAThousandFlippedBytesIsNoticed) {
  for (int i = 0; i < 1000; ++i) {
    const auto& [name, content] = AnyFile();
    std::string flipped = content;
    const std::size_t place = Below(content.size());
    flipped[place] = static_cast<char>(flipped[place] ^ static_cast<char>(1 + Below(255)));
    export_.WriteFile(name, flipped);
    EXPECT_NE(ToldOfBag(), "") << name << " at " << place << ", " << i;
    export_.WriteFile(name, content);
  }
  EXPECT_EQ(ToldOfBag(), "");
}

TEST_F(BagDamageTest, EachFlippedBitOfTheListOfListsIsNoticed) {
  const std::string name = "tagmanifest-sha256.txt";
  const std::string content = export_.ReadFile(name);
  for (std::size_t i = 0; i < content.size() * 8; i += 3) {
    std::string flipped = content;
    flipped[i / 8] = static_cast<char>(flipped[i / 8] ^ (1 << i % 8));
    export_.WriteFile(name, flipped);
    EXPECT_NE(ToldOfBag(), "") << i / 8 << ": " << flipped.substr(i / 8, 8);
  }
}

TEST_F(BagDamageTest, FilesThatAreCutOrLongerAreNoticed) {
  for (const auto& [name, content] : files_) {
    export_.WriteFile(name, content.substr(0, Below(content.size())));
    EXPECT_NE(ToldOfBag(), "") << name << " cut";
    export_.WriteFile(name, content + "x");
    EXPECT_NE(ToldOfBag(), "") << name << " longer";
    export_.WriteFile(name, content);
  }
}

TEST_F(BagDamageTest, FilesThatAreGoneOrRenamedAreNoticed) {
  for (const auto& [name, content] : files_) {
    if (name == "tagmanifest-sha256.txt") continue;  // A bag may be without one.
    export_.Rename(name, name + "x");
    EXPECT_NE(ToldOfBag(), "") << name << " renamed";
    export_.Remove(name + "x");
    EXPECT_NE(ToldOfBag(), "") << name << " gone";
    export_.WriteFile(name, content);
  }
}

TEST_F(BagDamageTest, FilesThatChangePlacesAreNoticed) {
  for (int i = 0; i < 50; ++i) {
    const auto& [name, content] = AnyFile();
    const auto& [otherName, otherContent] = AnyFile();
    if (content == otherContent) continue;
    export_.WriteFile(name, otherContent);
    export_.WriteFile(otherName, content);
    EXPECT_NE(ToldOfBag(), "") << name << " and " << otherName;
    export_.WriteFile(name, content);
    export_.WriteFile(otherName, otherContent);
  }
}

TEST_F(BagDamageTest, FilesThatComeToThePayloadAreNoticed) {
  for (const char* name : {"data/a", "data/data/0000090B.dxl", "data/Thumbs.db", "data/x/y"}) {
    export_.WriteFile(name, "x");
    EXPECT_NE(ToldOfBag(), "") << name;
    export_.Remove(name);
  }
}

}  // namespace
}  // namespace larkspan::console
