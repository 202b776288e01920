// The names that the library and its two flavours export.
#include <fstream>
#include <string>

#include "standin/EntryNames.h"
#include "tests/standin/LoadedLibrary.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

// The names of the import library of programs.
std::vector<std::string> ImportedNames() {
  std::ifstream in(LARKSPAN_EXPORTS);
  std::vector<std::string> names;
  for (std::string line; std::getline(in, line);) {
    const std::size_t sign = line.find('@');
    if (sign != std::string::npos) names.push_back(line.substr(0, sign));
  }
  return names;
}

void ExpectEntries(const std::string& folder, const std::string& lacking) {
  const LoadedLibrary library(std::filesystem::path(LARKSPAN_LIBRARIES) / folder);
  ASSERT_TRUE(library.isLoaded());
  for (const std::string_view entry : standin::kEntryNames) {
    const std::string name(entry);
    EXPECT_EQ(library.Address(name) != nullptr, name != lacking) << name;
  }
}

}  // namespace

TEST(Exports, HoldEveryNameThatProgramsImport) {
  const std::vector<std::string> names = ImportedNames();
  EXPECT_EQ(names.size() + 2, std::size(standin::kEntryNames));
  for (const std::string& name : names) EXPECT_TRUE(standin::IsEntryName(name)) << name;
}

TEST(Exports, OfTheLibraryAreComplete) { ExpectEntries("", ""); }

TEST(Exports, OfTheBareLibraryLackTheSearch) { ExpectEntries("bare", "NSFSearchExtended3"); }

TEST(Exports, OfTheOtherFlavourLackThePurge) { ExpectEntries("nopurge", "NIFPurgeCollection"); }

}  // namespace larkspan::standin_test
