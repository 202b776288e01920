#include "tests/torture/FullDiskCheck.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <utility>

namespace larkspan::torture {

namespace {

using testing::OutputTree;

// Each write to one of these is a line.
const std::set<std::string> kOfLines = {"log.txt", "audit.txt", "unidindex.txt", "idtable.txt"};

// They are there while a note is handled.
const std::set<std::string> kPassing = {"temp.tmp", "marker.txt"};

std::string LastComponent(const std::string& name) {
  std::string last = name.substr(name.find_last_of('/') + 1);
  std::transform(last.begin(), last.end(), last.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return last;
}

bool IsToBeWhole(const std::string& name) {
  return !name.ends_with('/') && !kOfLines.contains(name) && !kPassing.contains(name);
}

class FullDiskCheck {
 public:
  FullDiskCheck(const FullDisk& disk, const OutputTree& tree, Lines& findings)
      : disk_(disk), tree_(tree), findings_(findings) {
    CountEarlier();
    CountOperations();
  }

  void Run() {
    for (const auto& [name, content] : tree_) {
      if (IsToBeWhole(name)) CheckFile(name, content);
    }
    for (const auto& [name, count] : placed_) {
      if (found_[name] < count) findings_.push_back(name + " is missing");
    }
    for (const std::string& name : kOfLines) CheckLines(name);
    // What an earlier worker left stays where no export comes to delete it.
    for (const std::string& name : kPassing) {
      if (tree_.contains(name) && !disk_.earlier.contains(name))
        findings_.push_back(name + " is left");
    }
  }

 private:
  void CountEarlier() {
    for (const auto& [name, content] : disk_.earlier) {
      if (IsToBeWhole(name)) ++placed_[LastComponent(name)];
      if (kOfLines.contains(name)) lines_[name] += LinesOf(disk_.earlier, name).size();
    }
  }

  // A list that cannot be written to its end is deleted.
  void CountOperations() {
    std::size_t listed = 0;
    int writes = 0;
    for (const std::string& operation : disk_.operations) {
      const std::string file = operation.substr(operation.find(' ') + 1);
      if (operation.starts_with("write ")) {
        if (++writes == disk_.firstFailingWrite) return;
        ++(file == "idtable.txt" ? listed : lines_[file]);
      }
      if (operation.starts_with("move ")) ++placed_[file];
      if (operation == "close idtable.txt") lines_[file] += std::exchange(listed, 0);
    }
  }

  void CheckFile(const std::string& name, const std::string& content) {
    const auto clean = disk_.clean.find(name);
    if (clean == disk_.clean.end() || clean->second != content) {
      findings_.push_back(name + " is not the whole file:\n" + content);
    } else {
      ++found_[LastComponent(name)];
    }
  }

  void CheckLines(const std::string& name) {
    Lines lines = LinesOf(tree_, name);
    if (!lines.empty() && lines.back().starts_with(testing::kTorn)) lines.pop_back();
    const Lines clean = LinesOf(disk_.clean, name);
    if (lines.size() < lines_[name]) {
      findings_.push_back(name + " has only " + std::to_string(lines.size()) + " lines of " +
                          std::to_string(lines_[name]));
    }
    if (lines.size() > clean.size() || !std::equal(lines.begin(), lines.end(), clean.begin())) {
      findings_.push_back(name + " does not begin as it should");
    }
  }

  const FullDisk& disk_;
  const OutputTree& tree_;
  Lines& findings_;
  std::map<std::string, int> placed_;  // In lower case, without folders, as operations name them.
  std::map<std::string, int> found_;
  std::map<std::string, std::size_t> lines_;
};

}  // namespace

void CheckFullDisk(const FullDisk& disk, const OutputTree& tree, Lines& findings) {
  FullDiskCheck(disk, tree, findings).Run();
}

}  // namespace larkspan::torture
