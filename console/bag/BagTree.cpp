#include "console/bag/BagTree.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "base/OutputPaths.h"
#include "console/bag/BagPath.h"
#include "console/folder/FolderTree.h"
#include "console/folder/SharedFile.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::wstring NameOf(const TreeEntry& entry) {
  std::wstring name(entry.folder);
  if (!entry.name.empty()) name += L"\\" + std::wstring(entry.name);
  return name;
}

std::string SlashedPath(const std::wstring& name) {
  std::string path = WideToUtf8(name.substr(1));
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// No bag can list a name that is no Unicode.
std::string PathOf(const std::wstring& name) {
  const std::string path = SlashedPath(name);
  std::wstring back = Utf8ToWide(path);
  std::replace(back.begin(), back.end(), L'/', L'\\');
  return L"\\" + back == name ? path : std::string();
}

}  // namespace

std::optional<BagTree> BagTree::List(const std::wstring& folder) {
  BagTree tree;
  tree.folder_ = folder;
  const bool isListed = VisitTree(folder, [&](const TreeEntry& entry) {
    const std::wstring name = NameOf(entry);
    switch (entry.kind) {
      case TreeEntry::Kind::kFile:
        tree.files_.push_back({name, PathOf(name), entry.size});
        break;
      case TreeEntry::Kind::kFolder:
        if (name == L"\\data") tree.hasPayloadFolder_ = true;
        break;
      case TreeEntry::Kind::kLink:
        tree.links_.push_back(SlashedPath(name));
        break;
      case TreeEntry::Kind::kUnlisted:
        tree.unlisted_.push_back(SlashedPath(name));
        break;
    }
  });
  if (!isListed) return std::nullopt;
  std::sort(tree.files_.begin(), tree.files_.end(), [](const BagFile& a, const BagFile& b) {
    return std::tie(a.path, a.name) < std::tie(b.path, b.name);
  });
  for (std::size_t i = 0; i < tree.files_.size(); ++i)
    tree.alike_.emplace(FoldPath(tree.files_[i].path), i);
  return tree;
}

std::optional<std::size_t> BagTree::Find(std::string_view path) const {
  const auto found = std::lower_bound(files_.begin(), files_.end(), path,
                                      [](const BagFile& file, std::string_view wanted) {
                                        return std::string_view(file.path) < wanted;
                                      });
  if (path.empty() || found == files_.end() || found->path != path) return std::nullopt;
  return static_cast<std::size_t>(found - files_.begin());
}

std::optional<std::size_t> BagTree::FindAlike(std::string_view path) const {
  if (const std::optional<std::size_t> same = Find(path)) return same;
  const auto found = path.empty() ? alike_.end() : alike_.find(FoldPath(path));
  if (found == alike_.end()) return std::nullopt;
  return found->second;
}

std::optional<std::string> BagTree::Read(const BagFile& file) const {
  SharedFile opened(output::Join(folder_, file.name));
  if (opened.state() != FileReading::kRead) return std::nullopt;
  return opened.ReadAll();
}

}  // namespace larkspan::console
