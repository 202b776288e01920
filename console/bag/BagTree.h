// What lies in the folder of a bag. Files are looked up among the names that the system lists, so
// that no path that somebody wrote into a list is ever opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace larkspan::console {

struct BagFile {
  std::wstring name;  // "\data\a.txt", as the system has it.
  std::string path;   // "data/a.txt"; empty for a name that has no UTF-8 form.
  std::uint64_t size = 0;

  bool IsPayload() const { return name.starts_with(L"\\data\\"); }
};

class BagTree {
 public:
  // No value when the folder cannot be listed.
  static std::optional<BagTree> List(const std::wstring& folder);

  // As List was given it.
  const std::wstring& folder() const { return folder_; }

  const std::vector<BagFile>& files() const { return files_; }
  bool hasPayloadFolder() const { return hasPayloadFolder_; }

  // Paths of what leads elsewhere and was not followed, and of folders that cannot be listed.
  const std::vector<std::string>& links() const { return links_; }
  const std::vector<std::string>& unlisted() const { return unlisted_; }

  // The index of the file of just this path, or of one that differs in letter case or Unicode
  // normalisation alone.
  std::optional<std::size_t> Find(std::string_view path) const;
  std::optional<std::size_t> FindAlike(std::string_view path) const;

  // The whole content of one file; no value when it cannot be read, or has a gigabyte and more.
  std::optional<std::string> Read(const BagFile& file) const;

 private:
  std::wstring folder_;
  std::vector<BagFile> files_;  // By path.
  std::unordered_map<std::string, std::size_t> alike_;
  std::vector<std::string> links_;
  std::vector<std::string> unlisted_;
  bool hasPayloadFolder_ = false;
};

}  // namespace larkspan::console
