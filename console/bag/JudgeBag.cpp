// How a bag is judged:
//   1. Its folder is listed. All that is opened later is one of these files.
//   2. bagit.txt, the manifests, bag-info.txt and fetch.txt are read.
//   3. Lists and files are held against each other.
//   4. Each listed file is read once, for all the sums that lists tell of it.
#include <windows.h>

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "console/bag/Bag.h"
#include "console/bag/BagFaults.h"
#include "console/bag/BagInfo.h"
#include "console/bag/BagPath.h"
#include "console/bag/BagTree.h"
#include "console/bag/Declaration.h"
#include "console/bag/FetchList.h"
#include "console/bag/FileSums.h"
#include "console/bag/Manifest.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

class BagJudge {
 public:
  BagJudge(const BagTree& tree, BagVerdict& verdict)
      : tree_(tree), verdict_(verdict), faults_(verdict.errors, verdict.warnings) {}

  // False when it was broken off.
  bool Judge(const FileProgress& progress) {
    ReadLists();
    CheckTree();
    for (const Manifest& manifest : manifests_) CheckEntries(manifest);
    CheckPayloadIsListed();
    CheckTagLists();
    CheckFetchIsListed();
    return CheckSums(progress);
  }

 private:
  const std::string& PathOf(std::size_t file) const { return tree_.files()[file].path; }

  void ReadLists() {
    declaration_ = ReadDeclaration(tree_, faults_);
    verdict_.version = std::to_string(declaration_.version.major) + "." +
                       std::to_string(declaration_.version.minor);
    verdict_.encoding = declaration_.encoding;
    const PayloadSize size = PayloadSizeOf(tree_);
    verdict_.payloadFiles = size.files;
    verdict_.payloadBytes = size.bytes;
    CheckPayloadSize(ReadBagInfo(tree_, declaration_, faults_), size, declaration_, faults_);
    fetched_ = ReadFetchList(tree_, declaration_, faults_);
    manifests_ = ReadManifests(tree_, declaration_, faults_);
    for (const Manifest& manifest : manifests_)
      if (!manifest.ofTags) verdict_.algorithms.push_back(DigestName(manifest.kind));
  }

  void CheckTree() {
    if (!tree_.hasPayloadFolder())
      faults_.AddError("no-payload", "data", "the bag has no folder 'data'");
    if (verdict_.algorithms.empty())
      faults_.AddError("no-manifest", "", "the bag has no list of its payload with sums");
    for (const std::string& link : tree_.links())
      faults_.AddError("link", link, link + " leads elsewhere and was not followed");
    for (const std::string& folder : tree_.unlisted())
      faults_.AddError("unreadable", folder, folder + " cannot be listed");
  }

  void CheckEntries(const Manifest& manifest) {
    for (const ManifestEntry& entry : manifest.entries) {
      if (entry.file) continue;
      const bool isFetched = !manifest.ofTags && fetched_.contains(entry.path);
      faults_.AddError(
          isFetched ? "not-fetched" : "missing", entry.path,
          entry.path + (isFetched ? " was not fetched; fetch.txt tells from where"
                                  : " is listed in " + manifest.name + " and is not there"));
    }
  }

  // Since version 1.0 every list of the payload lists all of it; before, one of them was enough.
  void CheckPayloadIsListed() {
    std::vector<bool> inAny(tree_.files().size());
    for (const Manifest& manifest : manifests_) {
      if (manifest.ofTags) continue;
      std::vector<bool> listed(tree_.files().size());
      for (const ManifestEntry& entry : manifest.entries)
        if (entry.file) listed[*entry.file] = inAny[*entry.file] = true;
      if (declaration_.IsVersion1()) TellUnlisted(listed, manifest.name);
    }
    if (!declaration_.IsVersion1()) TellUnlisted(inAny, "any manifest");
  }

  void TellUnlisted(const std::vector<bool>& listed, const std::string& list) {
    for (std::size_t i = 0; i < listed.size(); ++i) {
      const BagFile& file = tree_.files()[i];
      if (listed[i] || !file.IsPayload()) continue;
      const std::string name = file.path.empty() ? WideToUtf8(file.name.substr(1)) : file.path;
      faults_.AddError("unlisted", name, name + " is not listed in " + list);
    }
  }

  void CheckTagLists() {
    for (const Manifest& manifest : manifests_) {
      if (!manifest.ofTags) continue;
      std::set<std::string> listed;
      for (const ManifestEntry& entry : manifest.entries) {
        listed.insert(entry.file ? PathOf(*entry.file) : entry.path);
        CheckIsTagFile(manifest, entry);
      }
      for (const Manifest& other : manifests_)
        if (!other.ofTags && !listed.contains(other.name))
          TellUnlistedTag(manifest, other.name, declaration_.IsVersion1());
      for (const char* name : {kDeclarationFile, kBagInfoFile})
        if (tree_.Find(name) && !listed.contains(name)) TellUnlistedTag(manifest, name, false);
    }
  }

  void CheckIsTagFile(const Manifest& manifest, const ManifestEntry& entry) {
    const bool isTagList =
        entry.file && std::any_of(manifests_.begin(), manifests_.end(), [&](const Manifest& each) {
          return each.ofTags && each.file == *entry.file;
        });
    if (!isTagList && !IsInPayload(entry.path)) return;
    // Of payload the RFC says only that such a list is one of tag files.
    faults_.Add(isTagList && declaration_.IsVersion1(), "manifest", entry.path,
                manifest.name + " lists " + entry.path + ", which is not for it to list");
  }

  void TellUnlistedTag(const Manifest& manifest, const std::string& name, bool isError) {
    faults_.Add(isError, "unlisted", name, name + " is not listed in " + manifest.name);
  }

  void CheckFetchIsListed() {
    std::map<std::string, std::size_t> lists;
    for (const std::string& path : fetched_) lists[path] = 0;
    for (const Manifest& manifest : manifests_) {
      if (manifest.ofTags || lists.empty()) continue;
      for (const ManifestEntry& entry : manifest.entries)
        if (const auto found = lists.find(entry.path); found != lists.end()) ++found->second;
    }
    const std::size_t wanted = declaration_.IsVersion1() ? verdict_.algorithms.size() : 1;
    for (const auto& [path, count] : lists)
      if (count < wanted)
        faults_.AddError("fetch", path, path + " stands in fetch.txt and not in the manifests");
  }

  // The sums of each listed file, by its index in the tree.
  std::vector<FileSum> WantedSums(std::vector<std::size_t>& places) const {
    std::vector<DigestKinds> kinds(tree_.files().size());
    for (const Manifest& manifest : manifests_)
      for (const ManifestEntry& entry : manifest.entries)
        if (entry.file && manifest.isKnown) kinds[*entry.file] |= OnlyKind(manifest.kind);
    std::vector<FileSum> sums;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      if (kinds[i].none()) continue;
      places[i] = sums.size();
      sums.push_back({tree_.files()[i].name, kinds[i], std::nullopt});
    }
    return sums;
  }

  bool CheckSums(const FileProgress& progress) {
    std::vector<std::size_t> places(tree_.files().size());
    std::vector<FileSum> sums = WantedSums(places);
    if (!CalculateSums(tree_.folder(), progress, sums)) return false;
    for (const Manifest& manifest : manifests_)
      for (const ManifestEntry& entry : manifest.entries)
        if (entry.file && manifest.isKnown) CheckSum(manifest, entry, sums[places[*entry.file]]);
    return true;
  }

  void CheckSum(const Manifest& manifest, const ManifestEntry& entry, const FileSum& sum) {
    if (!sum.digests)
      return faults_.AddError("unreadable", entry.path, entry.path + " cannot be read");
    if (sum.digests->Of(manifest.kind) == entry.digest) return;
    faults_.AddError("sum", entry.path,
                     entry.path + " has another content than " + manifest.name + " tells");
  }

  const BagTree& tree_;
  BagVerdict& verdict_;
  BagFaults faults_;
  Declaration declaration_;
  std::vector<Manifest> manifests_;
  std::set<std::string> fetched_;
};

bool HasFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::optional<BagVerdict> JudgeBag(const std::wstring& folder, const FileProgress& progress,
                                   std::string& whyNot) {
  const std::wstring path = UnlimitedPath(folder);
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    whyNot = "There is no such folder.";
    return std::nullopt;
  }
  const std::optional<BagTree> tree = BagTree::List(path);
  if (!tree) {
    whyNot = "The folder cannot be listed.";
    return std::nullopt;
  }
  BagVerdict verdict;
  if (!BagJudge(*tree, verdict).Judge(progress)) {
    whyNot = "The check was broken off.";
    return std::nullopt;
  }
  return verdict;
}

bool IsBag(const std::wstring& folder) { return HasFile(UnlimitedPath(folder) + L"\\bagit.txt"); }

std::wstring ExportWithin(const std::wstring& folder) {
  return IsBag(folder) ? folder + L"\\data" : folder;
}

}  // namespace larkspan::console
