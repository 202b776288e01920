// The lists of a bag: "manifest-sha256.txt" of its payload, "tagmanifest-sha256.txt" of its other
// files.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/bag/BagFaults.h"
#include "console/bag/BagTree.h"
#include "console/bag/Declaration.h"
#include "console/bag/Digests.h"

namespace larkspan::console {

struct ManifestEntry {
  std::string path;
  std::string digest;               // In lower case.
  std::optional<std::size_t> file;  // Its index in the tree; no value: it is not there.
};

struct Manifest {
  std::string name;
  std::size_t file = 0;
  bool ofTags = false;
  DigestKind kind = DigestKind::kSha256;
  bool isKnown = false;  // Whether the system can calculate that sum.
  std::vector<ManifestEntry> entries;
};

// What many lines of one list have in common is told once, with their number.
class LineQuirks {
 public:
  void Count(const std::string& what) { ++counts_[what]; }
  void Tell(const std::string& list, BagFaults& faults) const;

 private:
  std::map<std::string, std::size_t> counts_;
};

struct FoundPath {
  std::string path;
  std::optional<std::size_t> file;
};

// The file that a list means by this path. No value for a path that no bag may tell, which is an
// error.
std::optional<FoundPath> FindListedFile(const BagTree& tree, const Declaration& declaration,
                                        const std::string& list, std::string_view text,
                                        LineQuirks& quirks, BagFaults& faults);

// All manifests of the bag, read; what is wrong with their lines is told.
std::vector<Manifest> ReadManifests(const BagTree& tree, const Declaration& declaration,
                                    BagFaults& faults);

// "manifest-sha256.txt", and the line of one file as sha256sum reads it.
std::string ManifestName(bool ofTags, DigestKind kind);
std::string ManifestLine(const std::string& digest, std::string_view path);

}  // namespace larkspan::console
