// Which views have a file, and what the files show, against what the databases say.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "tests/xml/ShownEntry.h"
#include "tests/xml/ViewRule.h"
#include "tests/xml/XmlTest.h"

namespace larkspan {

namespace {

using nlohmann::json;

class ViewFolderTest : public TreeTest {};

TEST_P(ViewFolderTest, HoldsAFileOfEachViewThatIsToBeExported) {
  std::set<std::string> required = {"folder"};  // stands for the folder where it is empty
  for (const json& view : ExportedViews(ReadDatabase(GetParam()))) {
    required.insert(ViewFileName(view));
  }
  std::set<std::string> found = {"folder"};
  for (const auto& entry : std::filesystem::directory_iterator(ViewFolderOf(GetParam()))) {
    found.insert(entry.path().filename().string());
  }
  EXPECT_EQ(found, required);
}

INSTANTIATE_TEST_SUITE_P(Trees, ViewFolderTest, ::testing::ValuesIn(ArchiveTrees()), TreeTestName);

struct ViewFile {
  std::string name;
  std::filesystem::path file;
  json note;
};

void PrintTo(const ViewFile& view, std::ostream* out) { *out << view.name; }

// The files of views of which this remains.
std::vector<ViewFile> ViewFiles(const std::vector<Remains>& wanted) {
  std::vector<ViewFile> files;
  for (const Tree& tree : ArchiveTrees()) {
    for (const json& note : ExportedViews(ReadDatabase(tree))) {
      if (std::find(wanted.begin(), wanted.end(), RemainsOf(note)) == wanted.end()) continue;
      const std::string name = ViewFileName(note);
      files.push_back({TestName(tree.name + "_" + name), ViewFolderOf(tree) / name, note});
    }
  }
  return files;
}

class ViewFileTest : public ::testing::TestWithParam<ViewFile> {};

TEST_P(ViewFileTest, ShowsWhatTheDatabaseSays) {
  const std::string file = ReadWholeFile(GetParam().file);
  EXPECT_TRUE(file.starts_with(kDeclarationLine));
  EXPECT_EQ(ReadShownEntries(file), DatabaseEntries(GetParam().note));
}

// Another letter or digit in the place of one; 0 for what is neither.
char Other(char character) {
  if (character >= '0' && character <= '9') return character == '9' ? '8' : character + 1;
  if (character >= 'a' && character <= 'z') return character == 'a' ? 'b' : 'a';
  if (character >= 'A' && character <= 'Z') return character == 'A' ? 'B' : 'A';
  return 0;
}

bool Shows(const std::string& file, const std::vector<ShownEntry>& entries) {
  try {
    return ReadShownEntries(file) == entries;
  } catch (const std::exception&) {
    return false;
  }
}

// Where a file behind its first line holds letters and digits: all places of a short file, and as
// many of a long one, evenly spread, as can be tried in the same time.
std::vector<std::size_t> PlacesToChange(const std::string& file) {
  constexpr std::size_t kMostBytesRead = 15'000'000;
  std::vector<std::size_t> places;
  for (std::size_t at = sizeof kDeclarationLine - 1; at < file.size(); ++at) {
    if (Other(file[at]) != 0) places.push_back(at);
  }
  const std::size_t step = 1 + places.size() * file.size() / kMostBytesRead;
  std::vector<std::size_t> chosen;
  for (std::size_t i = 0; i < places.size(); i += step) chosen.push_back(places[i]);
  return chosen;
}

TEST_P(ViewFileTest, ShowsSomethingElseWhenACharacterIsChanged) {
  std::string file = ReadWholeFile(GetParam().file);
  const std::vector<ShownEntry> entries = DatabaseEntries(GetParam().note);
  ASSERT_TRUE(Shows(file, entries));
  for (const std::size_t at : PlacesToChange(file)) {
    const char kept = file[at];
    file[at] = Other(kept);
    EXPECT_FALSE(Shows(file, entries)) << "byte " << at << " is not looked at";
    file[at] = kept;
  }
}

INSTANTIATE_TEST_SUITE_P(Views, ViewFileTest,
                         ::testing::ValuesIn(ViewFiles({Remains::kAllEntries,
                                                        Remains::kEntriesAlone})),
                         [](const auto& test) { return test.param.name; });

ShownValue ListOf(const char* type, std::vector<ShownValue> parts) {
  return {type, "", 0, std::move(parts)};
}

class DamagedValuesTest : public ::testing::TestWithParam<ViewFile> {};

// The first column names the damage, the second has it.
TEST_P(DamagedValuesTest, AreShownAsFarAsTheyAreWhole) {
  const std::map<std::string, ShownValue> required = {
      {"number of three bytes", {}},
      {"number list without its entries", ListOf("numberlist", {})},
      {"date-time of two bytes", {}},
      {"date-time list without its pairs", ListOf("datetimelist", {})},
      {"text list that ends in its lengths", ListOf("textlist", {})},
      {"text list whose last text is too long", ListOf("textlist", {{"text", "A", 0, {}}})},
      {"half a type word", {}},
      {"date-time of no day", {"datetime", "0000-00-00T00:00:00.00Z", 0, {}}}};
  std::map<std::string, ShownValue> shown;
  for (const ShownEntry& entry : ReadShownEntries(ReadWholeFile(GetParam().file))) {
    ASSERT_EQ(entry.values.size(), 2u);
    shown[entry.values[0].text] = entry.values[1];
  }
  EXPECT_EQ(shown, required);
}

INSTANTIATE_TEST_SUITE_P(Views, DamagedValuesTest,
                         ::testing::ValuesIn(ViewFiles({Remains::kDamagedValues})),
                         [](const auto& test) { return test.param.name; });

}  // namespace

}  // namespace larkspan
