#include "tests/xml/Trees.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace larkspan {

namespace fs = std::filesystem;

std::vector<Tree> AllTrees() {
  std::vector<Tree> trees;
  for (const fs::directory_entry& entry : fs::directory_iterator(LARKSPAN_EXPECTED_TREES)) {
    const std::string name = entry.path().filename().string();
    const std::string database = name.substr(0, name.rfind('-')) + ".nsf";
    const Tree tree = {name, entry.path(), fs::path(LARKSPAN_SAMPLES) / database};
    if (!XmlFilesOf(tree).empty()) trees.push_back(tree);
  }
  std::sort(trees.begin(), trees.end(),
            [](const Tree& one, const Tree& other) { return one.name < other.name; });
  return trees;
}

std::vector<Tree> ArchiveTrees() {
  std::vector<Tree> trees = AllTrees();
  std::erase_if(trees, [](const Tree& tree) { return !tree.name.ends_with("-archive"); });
  return trees;
}

std::vector<fs::path> XmlFilesOf(const Tree& tree) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.folder)) {
    const fs::path extension = entry.path().extension();
    if (extension == ".xml" || extension == ".dxl") files.push_back(entry.path());
  }
  return files;
}

fs::path ViewFolderOf(const Tree& tree) { return tree.folder / "views"; }

std::string ViewFileName(const nlohmann::json& viewNote) {
  return viewNote.at("id").get<std::string>() + ".xml";
}

std::string ReadWholeFile(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error(file.string() + " cannot be read");
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

nlohmann::json ReadDatabase(const Tree& tree) {
  return nlohmann::json::parse(ReadWholeFile(tree.database));
}

std::string TestName(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](unsigned char character) { return !std::isalnum(character); },
      '_');
  return name;
}

}  // namespace larkspan
