// --workers on each of the sample databases: what several workers leave is what one leaves.
#include <cctype>
#include <filesystem>
#include <iterator>
#include <set>
#include <string_view>

#include "tests/console/system/WorkersTest.h"
#include "tests/support/SampleData.h"

namespace larkspan::console {
namespace {

using testing::DescribeDifferences;
using testing::OutputTree;
using testing::SampleDataFolder;

struct Sample {
  const wchar_t* path;
  const wchar_t* server = L"";
};

constexpr Sample kSamples[] = {
    {L"big-view.nsf"},
    {L"crash-all.nsf"},
    {L"crash-first.nsf"},
    {L"crash-last.nsf"},
    {L"crash-middle.nsf"},
    {L"crash-two.nsf"},
    {L"damaged-views.nsf"},
    {L"damaged.nsf"},
    {L"designfail-6967.nsf"},
    {L"designfail-6968.nsf"},
    {L"empty.nsf"},
    {L"locked.nsf"},
    {L"sample.nsf"},
    {L"sealed.nsf"},
    {L"bulbs.nsf", L"Garden"},
    {L"\u00D6sterliche Beete.nsf", L"Glash\u00E4user"},
};

// Of big.nsf a smaller one is compared, see below.
constexpr const wchar_t* kNotAmongThem[] = {L"big.nsf"};

// Relative to the folder of the samples.
std::wstring FileOf(const Sample& sample) {
  const std::wstring server = sample.server;
  return (server.empty() ? L"" : L"servers/" + server + L"/") + sample.path;
}

std::set<std::wstring> SampleFiles() {
  std::set<std::wstring> files;
  const std::filesystem::path folder = SampleDataFolder();
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    if (entry.path().extension() == L".nsf")
      files.insert(entry.path().lexically_relative(folder).generic_wstring());
  return files;
}

OutputTree WithoutDebugLines(OutputTree tree) {
  Lines lines = SplitLines(tree.at("log.txt"));
  const auto isDebug = [](const std::string& line) { return line.starts_with("#DEBUG#"); };
  EXPECT_GT(std::erase_if(lines, isDebug), 0u);
  tree["log.txt"].clear();
  for (const std::string& line : lines) tree["log.txt"] += line + "\n";
  return tree;
}

class SamplesByWorkersTest : public WorkersTest {
 protected:
  static OutputTree Tree(const std::wstring& folder, bool isWithDebugLines) {
    OutputTree tree = WholeTree(folder);
    return isWithDebugLines ? WithoutDebugLines(std::move(tree)) : tree;
  }

  // One worker first, then each of these numbers.
  void ExpectThatOfOneWorker(const Words& numbers, const Words& options = {},
                             bool isWithDebugLines = false) {
    const std::uint32_t code = ExportAlone(options);
    for (const std::wstring& number : numbers) {
      std::filesystem::remove_all(out_);
      Words words = {L"--workers", number};
      words.insert(words.end(), options.begin(), options.end());
      EXPECT_EQ(Export(words).code, code) << number;
      EXPECT_EQ(DescribeDifferences(Tree(Alone(), isWithDebugLines), Tree(out_, isWithDebugLines)),
                "")
          << number;
      EXPECT_EQ(AccountOf(Alone()), AccountOf(out_)) << number;
      EXPECT_EQ(OutcomeOf(Alone()).at("reason"), Outcome().at("reason")) << number;
    }
  }
};

class SampleWorkersTest : public SamplesByWorkersTest,
                          public ::testing::WithParamInterface<Sample> {};

TEST_P(SampleWorkersTest, TheFolderIsThatOfOneWorker) {
  const Sample& sample = GetParam();
  database_ = sample.path;
  Words options;
  if (*sample.server != L'\0') options = {L"--server", sample.server};
  ExpectThatOfOneWorker({L"1", L"2", L"3", L"8"}, options);
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleWorkersTest, ::testing::ValuesIn(kSamples),
                         [](const auto& test) {
                           std::string name;
                           for (const wchar_t letter : std::wstring_view(test.param.path))
                             if (letter < 0x80 && std::isalnum(static_cast<int>(letter)) != 0)
                               name += static_cast<char>(letter);
                           return name;
                         });

TEST(SampleListTest, NoSampleIsForgotten) {
  std::set<std::wstring> known(std::begin(kNotAmongThem), std::end(kNotAmongThem));
  for (const Sample& sample : kSamples) known.insert(FileOf(sample));
  EXPECT_EQ(SampleFiles(), known);
}

// The hundred thousand documents of the sample take one worker minutes under Wine. Six hundred are
// several slices for each worker, of nine notes to a hundred, and not the same ones for three
// workers as for eight; other numbers would show no more.
TEST_F(SamplesByWorkersTest, TheBigOneWithFewerDocumentsIsThatOfOneWorker) {
  Json database = Json::parse(ReadBytes(SampleDataFolder() + L"/big.nsf"));
  database.at("generate").at("documents") = 600;
  database.at("generate").at("profileEvery") = 60;
  run_.AddDatabase(database_, database.dump());
  ExpectThatOfOneWorker({L"3", L"8"});
  EXPECT_EQ(Outcome().at("account").at("notes").at("exported"), 600);
}

TEST_F(SamplesByWorkersTest, WithoutViewsTheFolderIsThatOfOneWorker) {
  database_ = L"sample.nsf";
  ExpectThatOfOneWorker({L"1", L"3"}, {L"--no-views"});
  EXPECT_EQ(FilesIn("views"), Lines());
}

TEST_F(SamplesByWorkersTest, WithDebugLinesTheRestIsThatOfOneWorker) {
  database_ = L"damaged.nsf";
  ExpectThatOfOneWorker({L"1", L"3"}, {L"--debug"}, true);
}

// Of the sealed notes two can be read with this ID file.
TEST_F(SamplesByWorkersTest, WithAnIdFileTheFolderIsThatOfOneWorker) {
  database_ = L"sealed.nsf";
  const std::wstring password = run_.folder() + L"\\password.txt";
  WriteBytes(password, "p\xC3\xA2querette\n");
  ExpectThatOfOneWorker({L"1", L"3"},
                        {L"--id-file", L"ids\\no\u00E9.id", L"--password-file", password});
  EXPECT_EQ(FilesIn("data"),
            (Lines{"data/00000902.dxl", "data/0000090A.dxl", "data/0000090E.dxl"}));
}

}  // namespace
}  // namespace larkspan::console
