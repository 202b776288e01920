#include "tests/support/OutputTree.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

#include "notes/NotesApi.h"
#include "tests/support/FileBytes.h"

namespace larkspan::testing {

namespace fs = std::filesystem;

namespace {

std::string ToUtf8(const fs::path& path) {
  const std::u8string text = path.generic_u8string();
  return std::string(text.begin(), text.end());
}

void WriteTree(const fs::path& root, const OutputTree& tree) {
  fs::remove_all(root);
  for (const auto& [name, content] : tree) {
    const fs::path path = root / fs::path(std::u8string(name.begin(), name.end()));
    if (name.ends_with('/')) {
      // A folder without files cannot be kept in a repository; this file stands for it.
      fs::create_directories(path);
      std::ofstream(path / "folder");
    } else {
      fs::create_directories(path.parent_path());
      std::ofstream(path, std::ios::binary) << content;
    }
  }
}

OutputTree ReadExpectedTree(const fs::path& root) {
  OutputTree tree = ReadOutputTree(root.wstring());
  std::erase_if(tree, [](const auto& entry) { return entry.first.ends_with("/folder"); });
  return tree;
}

// Expected files name the namespace of DXL by a word of their own, so that its value stands in one
// place.
void NameNamespace(std::string& content) {
  static constexpr std::string_view kName = "DXL-NAMESPACE";
  const std::string_view value = notes_api::kDxlNamespace;
  for (std::size_t at = content.find(value); at != std::string::npos;
       at = content.find(value, at + kName.size())) {
    content.replace(at, value.size(), kName);
  }
}

std::string FirstDifference(const std::string& expected, const std::string& actual) {
  std::size_t at = 0;
  while (at < expected.size() && at < actual.size() && expected[at] == actual[at]) ++at;
  const std::size_t from = at < 40 ? 0 : at - 40;
  return "at byte " + std::to_string(at) + ": expected ..." + expected.substr(from, 120) +
         "... but found ..." + actual.substr(from, 120) + "...";
}

}  // namespace

OutputTree ReadOutputTree(const std::wstring& folder) {
  OutputTree tree;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const std::string name = ToUtf8(entry.path().lexically_relative(folder));
    if (entry.is_directory()) {
      tree[name + "/"];
    } else {
      tree[name] = ReadBytes(entry.path().wstring());
    }
  }
  return tree;
}

std::string MaskAuditTimes(const std::string& audit) {
  static const std::regex times(
      "(Archive started at|Archive ended at|Total runtime \\(seconds\\)): [^\r\n]+");
  return std::regex_replace(audit, times, "$1: *");
}

std::string DescribeDifferences(const OutputTree& expected, const OutputTree& actual) {
  std::string differences;
  for (const auto& [name, content] : expected) {
    const auto found = actual.find(name);
    if (found == actual.end()) {
      differences += "missing: " + name + "\n";
    } else if (found->second != content) {
      differences += "differs: " + name + " " + FirstDifference(content, found->second) + "\n";
    }
  }
  for (const auto& [name, content] : actual) {
    if (!expected.contains(name)) differences += "unexpected: " + name + "\n" + content + "\n";
  }
  return differences;
}

std::string CompareWithExpected(const OutputTree& tree, const std::string& expectedName) {
  const fs::path root =
      fs::path(LARKSPAN_TEST_SOURCE_FOLDER) / "system" / "expected" / expectedName;
  OutputTree masked = tree;
  if (masked.contains("audit.txt")) masked["audit.txt"] = MaskAuditTimes(masked["audit.txt"]);
  for (auto& [name, content] : masked) NameNamespace(content);
  if (std::getenv("LARKSPAN_WRITE_EXPECTED") != nullptr) {
    WriteTree(root, masked);
    return "the expected tree was written anew";
  }
  if (!fs::exists(root)) return "there is no expected tree " + expectedName;
  return DescribeDifferences(ReadExpectedTree(root), masked);
}

}  // namespace larkspan::testing
