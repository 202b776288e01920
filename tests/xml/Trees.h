// The output trees that are kept beside the system tests, and the databases they come from. The
// name of a tree is that of its database, a hyphen and the kind of the export.
#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace larkspan {

struct Tree {
  std::string name;                // such as sample-archive
  std::filesystem::path folder;    // where its files are
  std::filesystem::path database;  // the file that was exported
};

// The trees with XML files in them, by name.
std::vector<Tree> AllTrees();

// Those of them that are archives.
std::vector<Tree> ArchiveTrees();

// The files with XML in them.
std::vector<std::filesystem::path> XmlFilesOf(const Tree& tree);

std::filesystem::path ViewFolderOf(const Tree& tree);

// The name of the file that holds what a view shows.
std::string ViewFileName(const nlohmann::json& viewNote);

// All bytes of a file. Throws std::runtime_error when it cannot be read.
std::string ReadWholeFile(const std::filesystem::path& file);

nlohmann::json ReadDatabase(const Tree& tree);

// A name as the names of parameterised tests may be.
std::string TestName(std::string name);

}  // namespace larkspan
