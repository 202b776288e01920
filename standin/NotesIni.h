// The configuration file notes.ini: which one a runtime start names, and what stands in it.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace larkspan::standin {

// Keys in lower case and values in UTF-8, as they stand in the file.
class NotesIni {
 public:
  // The file named by the first argument after the program's own that begins with "=" and has more
  // than that; without one, notes.ini beside the library. Nothing when there is no such file.
  static std::optional<NotesIni> Find(int argc, const char* const* argv);

  static std::optional<NotesIni> Read(const std::filesystem::path& file);

  // Empty when the key is missing. The key is in lower case.
  std::string Value(const std::string& key) const;

  // Nothing when the key is missing. The key may have any letter case.
  std::optional<std::string> Variable(std::string_view key) const;

  // The value as a path; a relative one is taken from the folder of the file. Empty when missing.
  std::filesystem::path PathValue(const std::string& key) const;

  const std::filesystem::path& folder() const { return folder_; }

 private:
  void AddLine(std::string line);

  std::filesystem::path folder_;
  std::map<std::string, std::string> values_;
};

}  // namespace larkspan::standin
