#include "tests/console/system/WorkersTest.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace larkspan::console {

using testing::DescribeDifferences;
using testing::OutputTree;

namespace {

constexpr const char* kFoldersOfNotes[] = {"data/", "design/", "design2/", "profile/", "views/"};

// "data/00000902.dxl", also of a file that lies in a part; empty for what is no note's or view's.
std::string PlaceOfNote(const std::string& name) {
  const std::size_t file = name.rfind('/') + 1;
  if (file == 0 || file == name.size()) return {};
  const std::size_t folder = file < 2 ? 0 : name.rfind('/', file - 2) + 1;
  const std::string place = name.substr(folder);
  const auto isIn = [&](const char* one) { return place.starts_with(one); };
  return std::any_of(std::begin(kFoldersOfNotes), std::end(kFoldersOfNotes), isIn) ? place : "";
}

std::string NoteOfFile(const std::string& name) {
  const std::string place = PlaceOfNote(name);
  return place.substr(place.find('/') + 1, place.empty() ? 0 : 8);
}

// The lines of the index without those of these notes.
std::string IndexWithout(const std::string& index, const std::set<std::string>& notes) {
  std::string rest;
  for (const std::string& line : SplitLines(index)) {
    if (!notes.contains(line.substr(0, 8))) rest += line + "\r\n";
  }
  return rest;
}

// Without what belongs to these notes.
OutputTree Without(OutputTree tree, const std::set<std::string>& notes) {
  std::erase_if(tree, [&](const auto& entry) { return notes.contains(NoteOfFile(entry.first)); });
  if (tree.contains("unidindex.txt"))
    tree["unidindex.txt"] = IndexWithout(tree["unidindex.txt"], notes);
  return tree;
}

// Whatever lies under the name of a note or view, also in a part, is that of the clean export.
std::string DescribeWrongFiles(const OutputTree& clean, const OutputTree& tree) {
  std::string wrong;
  for (const auto& [name, content] : tree) {
    const std::string place = PlaceOfNote(name);
    if (place.empty()) continue;
    const auto found = clean.find(place);
    if (found == clean.end() || found->second != content) wrong += name + "\n";
  }
  return wrong;
}

}  // namespace

OutputTree WorkersTest::WholeTree(const std::wstring& folder) {
  OutputTree tree = testing::ReadOutputTree(folder);
  tree.erase("outcome.json");
  if (tree.contains("audit.txt")) tree["audit.txt"] = testing::MaskAuditTimes(tree["audit.txt"]);
  return tree;
}

Json WorkersTest::AccountOf(const std::wstring& folder) {
  Json account = OutcomeOf(folder).at("account");
  for (const char* time : {"started", "ended", "runtimeSeconds"}) account.at("audit").erase(time);
  account.at("folders").at(0).erase("bytes");
  return account;
}

std::uint32_t WorkersTest::ExportAlone(const Words& more) {
  const std::wstring out = std::exchange(out_, Alone());
  const ConsoleEnd end = Export(more);
  out_ = out;
  return end.code;
}

void WorkersTest::ExpectLikeAlone(const ConsoleEnd& end, const Words& more) {
  EXPECT_EQ(end.code, ExportAlone(more)) << end.output;
  EXPECT_EQ(DescribeDifferences(WholeTree(Alone()), WholeTree(out_)), "");
  EXPECT_EQ(AccountOf(Alone()), AccountOf(out_));
}

void WorkersTest::FailAt(const std::vector<std::wstring>& notes, const std::string& faults) const {
  std::string plan = faults;
  for (const std::wstring& note : notes)
    plan += std::string(plan.empty() ? "" : ", ") +
            R"({"entry": "DXLExportNote", "status": 546, "note": ")" +
            std::string(note.begin(), note.end()) + R"("})";
  run_.ChangeFaults("[" + plan + "]");
}

std::set<std::string> WorkersTest::ToldAsLost() const {
  std::set<std::string> lost;
  const Json outcome = Outcome();
  for (const Json& loss : outcome.at("account").at("losses"))
    lost.insert(loss.value("id", std::string()));
  for (const Json& loss : outcome.at("lostViews")) lost.insert(loss.value("id", std::string()));
  return lost;
}

void WorkersTest::ExpectAccountedFor(const OutputTree& clean, std::uint32_t code) const {
  const OutputTree tree = NotesTree();
  EXPECT_EQ(DescribeWrongFiles(clean, tree), "");
  const std::uint32_t verified = VerifyCode();
  if (code == 0) {
    EXPECT_EQ(verified, 0u);
    EXPECT_EQ(DescribeDifferences(clean, tree), "");
  } else if (code == 3) {
    EXPECT_EQ(verified, 3u);
    const std::set<std::string> lost = ToldAsLost();
    EXPECT_EQ(DescribeDifferences(Without(clean, lost), Without(tree, lost)), "");
  } else {
    EXPECT_NE(verified, 0u);
    EXPECT_NE(verified, 3u);
  }
}

}  // namespace larkspan::console
