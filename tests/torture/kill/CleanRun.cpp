#include "tests/torture/kill/CleanRun.h"

#include <string_view>

namespace larkspan::torture {

namespace {

// In the order in which a note gets its files.
constexpr const char* kNoteFolders[] = {"data/", "design/", "profile/", "design2/"};

}  // namespace

void FindNotes(CleanRun& run) {
  for (const char* folder : kNoteFolders) {
    for (const auto& [name, content] : run.tree) {
      if (!name.starts_with(folder) || name.ends_with('/')) continue;
      const std::string digits = name.substr(std::string_view(folder).size(), 8);
      run.notes[static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16))].push_back(name);
    }
  }
}

bool IsFinalName(const std::string& name) {
  return name.ends_with(".dxl") || name.ends_with(".xml");
}

std::string ContentOf(const OutputTree& tree, const std::string& name) {
  const auto found = tree.find(name);
  return found == tree.end() ? std::string() : found->second;
}

NoteIds NotesBehind(const Lines& log, const std::string& words) {
  NoteIds notes;
  for (const std::string& line : log) {
    if (!line.starts_with(words)) continue;
    notes.push_back(
        static_cast<std::uint32_t>(std::stoul(line.substr(words.size(), 8), nullptr, 16)));
  }
  return notes;
}

}  // namespace larkspan::torture
