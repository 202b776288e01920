// A thousand damages, drawn from seeds, to real exports that have recorded themselves: each must
// make the account tell of more than it told before. What no sum is kept of - a letter within a
// text that becomes another - is not among them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <utility>

#include "console/account/Outcome.h"
#include "console/account/Verify.h"
#include "console/text/Utf.h"
#include "tests/support/ExportRun.h"
#include "tests/support/FileBytes.h"

namespace larkspan::console {
namespace {

using larkspan::testing::ExportRun;

std::optional<Account> AccountOf(const std::wstring& folder) {
  std::string whyNot;
  return VerifyFolder(folder, nullptr, whyNot);
}

// An export, and all of its files as they were.
class TorturedExport {
 public:
  explicit TorturedExport(const wchar_t* database) {
    run_.Export(database, {L"-archive"});
    Outcome outcome;
    outcome.state = Outcome::State::kEnded;
    outcome.exitCode = ExitCode::kWhole;
    outcome.account = AccountOf(run_.output());
    WriteOutcome(run_.output(), outcome);
    undamaged_ = AccountOf(run_.output()).value();
    for (const auto& [name, bytes] : run_.Tree())
      if (!name.ends_with("/")) files_[name] = bytes;
  }

  const Account& undamaged() const { return undamaged_; }
  const std::map<std::string, std::string>& files() const { return files_; }
  const std::wstring& folder() const { return run_.output(); }

  void Write(const std::string& name, const std::string& bytes) {
    touched_.push_back(name);
    WriteBytes(Path(name), bytes);
  }

  void Remove(const std::string& name) {
    touched_.push_back(name);
    std::filesystem::remove(Path(name));
  }

  void Restore() {
    for (const std::string& name : std::exchange(touched_, {})) {
      const auto original = files_.find(name);
      if (original != files_.end())
        WriteBytes(Path(name), original->second);
      else
        std::filesystem::remove(Path(name));
    }
  }

 private:
  std::wstring Path(const std::string& name) const {
    return (std::filesystem::path(run_.output()) / Utf8ToWide(name)).wstring();
  }

  ExportRun run_;
  Account undamaged_;
  std::map<std::string, std::string> files_;
  std::vector<std::string> touched_;
};

class Damager {
 public:
  Damager(TorturedExport& out, unsigned seed) : out_(out), random_(seed) {}

  // Does one damage and says which.
  std::string Damage() {
    using Kind = std::string (Damager::*)();
    constexpr Kind kKinds[] = {
        &Damager::BreakTag,        &Damager::RemoveNote,    &Damager::RemoveOther,
        &Damager::AddFile,         &Damager::RenameFile,    &Damager::SwapNotes,
        &Damager::TruncateXml,     &Damager::TruncateList,  &Damager::RemoveListLine,
        &Damager::RemoveIndexLine, &Damager::RemoveLogLine, &Damager::ChangeCount,
        &Damager::MoveNote};
    return (this->*kKinds[Draw(std::size(kKinds))])();
  }

 private:
  std::size_t Draw(std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random_);
  }

  template <typename Accept>
  std::string DrawFile(Accept accept) {
    std::vector<std::string> names;
    for (const auto& [name, bytes] : out_.files())
      if (accept(name)) names.push_back(name);
    return names.at(Draw(names.size()));
  }

  static bool IsXml(const std::string& name) {
    return name.ends_with(".dxl") || name.ends_with(".xml");
  }

  static bool IsNote(const std::string& name) {
    return name.starts_with("data/") || name.starts_with("design/") || name.starts_with("profile/");
  }

  static bool IsOther(const std::string& name) { return IsXml(name) && !IsNote(name); }

  const std::string& Bytes(const std::string& name) const { return out_.files().at(name); }

  std::string BreakTag() {
    const std::string name = DrawFile(IsXml);
    std::string bytes = Bytes(name);
    const std::size_t comment = bytes.rfind("-->");
    std::vector<std::size_t> ends;
    for (std::size_t at = bytes.find("</", comment == bytes.npos ? 0 : comment); at != bytes.npos;
         at = bytes.find("</", at + 1))
      ends.push_back(at);
    if (ends.empty()) ends.push_back(bytes.rfind("/>"));
    const std::size_t at = ends[Draw(ends.size())];
    out_.Write(name, bytes.erase(at, 1));
    return "tag broken in " + name + " at " + std::to_string(at);
  }

  std::string RemoveNote() {
    const std::string name = DrawFile(IsNote);
    out_.Remove(name);
    return "removed " + name;
  }

  std::string RemoveOther() {
    const std::string name = DrawFile(IsOther);
    out_.Remove(name);
    return "removed " + name;
  }

  std::string AddFile() {
    constexpr const char* kNames[] = {"00000902.dxl",
                                      "notes.txt",
                                      "data/00000003.dxl",
                                      "data/copy of 00000902.dxl",
                                      "design/x",
                                      "design2/00000003.dxl",
                                      "profile/00000003.dxl",
                                      "views/00000003.xml",
                                      "views/x.xml",
                                      "marker.txt",
                                      "temp.tmp",
                                      "db.dxl.new"};
    const std::string name = kNames[Draw(std::size(kNames))];
    out_.Write(name, Bytes(DrawFile(IsXml)));
    return "added " + name;
  }

  std::string RenameFile() {
    const std::string name = DrawFile(IsXml);
    const std::string folder = name.substr(0, name.rfind('/') + 1);
    const std::string to =
        folder + (Draw(2) == 0 ? "0000" + std::to_string(1000 + Draw(9000)) + ".dxl" : "renamed");
    out_.Write(to, Bytes(name));
    out_.Remove(name);
    return "renamed " + name + " to " + to;
  }

  std::string SwapNotes() {
    const std::string one = DrawFile(IsNote);
    const std::string other =
        DrawFile([&](const std::string& name) { return IsNote(name) && name != one; });
    out_.Write(one, Bytes(other));
    out_.Write(other, Bytes(one));
    return "swapped " + one + " and " + other;
  }

  std::string TruncateXml() {
    const std::string name = DrawFile(IsXml);
    return Truncate(name, Bytes(name).rfind('>') + 1);
  }

  std::string TruncateList() {
    constexpr const char* kNames[] = {"idtable.txt", "unidindex.txt", "audit.txt"};
    const std::string name = kNames[Draw(std::size(kNames))];
    return Truncate(name, Bytes(name).size());
  }

  std::string Truncate(const std::string& name, std::size_t below) {
    const std::size_t size = Draw(below);
    out_.Write(name, Bytes(name).substr(0, size));
    return "cut " + name + " to " + std::to_string(size);
  }

  template <typename Accept>
  std::string RemoveLine(const std::string& name, Accept accept) {
    const Lines lines = SplitLines(Bytes(name));
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < lines.size(); ++i)
      if (accept(lines[i])) places.push_back(i);
    const std::size_t removed = places.at(Draw(places.size()));
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i)
      if (i != removed) text += lines[i] + "\r\n";
    out_.Write(name, text);
    return "removed from " + name + ": " + lines[removed];
  }

  static bool IsAny(const std::string&) { return true; }

  std::string RemoveListLine() { return RemoveLine("idtable.txt", IsAny); }

  // Nothing asks for the line of a note on which a worker died.
  std::string RemoveIndexLine() {
    return RemoveLine("unidindex.txt",
                      [](const std::string& line) { return !line.starts_with("00001236,"); });
  }

  std::string RemoveLogLine() {
    if (!out_.files().contains("log.txt")) return RemoveListLine();
    return RemoveLine("log.txt",
                      [](const std::string& line) { return line.starts_with("#WARNING# - M"); });
  }

  std::string ChangeCount() {
    std::string bytes = Bytes("audit.txt");
    std::vector<std::size_t> ends;
    const std::size_t first = bytes.find("Database total documents");
    for (std::size_t at = bytes.find("\r\n", first); at != bytes.npos;
         at = bytes.find("\r\n", at + 1))
      if (std::isdigit(static_cast<unsigned char>(bytes[at - 1])) != 0) ends.push_back(at - 1);
    char& digit = bytes[ends.at(Draw(ends.size()))];
    digit = static_cast<char>('0' + (digit - '0' + 1 + static_cast<int>(Draw(9))) % 10);
    out_.Write("audit.txt", bytes);
    return "a count changed: " + bytes;
  }

  std::string MoveNote() {
    const std::string name = DrawFile(IsNote);
    const std::string from = name.substr(0, name.find('/'));
    const std::string to = from == "data" ? "profile" : "data";
    out_.Write(to + name.substr(from.size()), Bytes(name));
    out_.Remove(name);
    return "moved " + name + " to " + to;
  }

  TorturedExport& out_;
  std::mt19937 random_;
};

constexpr unsigned kDamagesOfATest = 25;

class DamageTortureTest : public ::testing::TestWithParam<unsigned> {
 protected:
  static void SetUpTestSuite() {
    exports_.push_back(std::make_unique<TorturedExport>(L"sample.nsf"));
    exports_.push_back(std::make_unique<TorturedExport>(L"damaged.nsf"));
  }
  static void TearDownTestSuite() { exports_.clear(); }

  static void ExpectUndamaged(const TorturedExport& out) {
    const std::optional<Account> account = AccountOf(out.folder());
    ASSERT_TRUE(account);
    EXPECT_EQ(AccountJson(*account), AccountJson(out.undamaged()));
  }

  static inline std::vector<std::unique_ptr<TorturedExport>> exports_;
};

TEST_P(DamageTortureTest, EachDamageIsNoticed) {
  ASSERT_EQ(exports_[0]->undamaged().Verdict(), ExitCode::kWhole);
  ASSERT_EQ(exports_[1]->undamaged().Verdict(), ExitCode::kLosses);
  for (unsigned i = 0; i < kDamagesOfATest; ++i) {
    const unsigned seed = GetParam() * kDamagesOfATest + i;
    TorturedExport& out = *exports_[seed % exports_.size()];
    const std::string damage = Damager(out, seed).Damage();
    const std::optional<Account> account = AccountOf(out.folder());
    out.Restore();
    ASSERT_TRUE(account) << damage;
    EXPECT_TRUE(account->findings.size() > out.undamaged().findings.size() ||
                account->losses.size() > out.undamaged().losses.size())
        << "seed " << seed << ": " << damage;
  }
  for (const auto& out : exports_) ExpectUndamaged(*out);
}

INSTANTIATE_TEST_SUITE_P(Seeds, DamageTortureTest, ::testing::Range(0U, 40U));

}  // namespace
}  // namespace larkspan::console
