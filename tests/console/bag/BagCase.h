// One row of a table of bags: what is changed in a whole one, and what is then told of it.
#pragma once

#include <functional>
#include <string>

#include "tests/console/bag/HandMadeBag.h"

namespace larkspan::console {

using Change = std::function<void(const HandMadeBag&)>;

struct BagCase {
  std::string name;
  std::string version;
  Change change;
  Lines told;
};

inline constexpr char kManifest[] = "manifest-sha256.txt";
inline constexpr char kInfo[] = "bag-info.txt";

inline Change WriteOver(const std::string& name, const std::string& bytes) {
  return [=](const HandMadeBag& bag) { bag.WriteFile(name, bytes); };
}

inline Change AppendTo(const std::string& name, const std::string& bytes) {
  return [=](const HandMadeBag& bag) { bag.Append(name, bytes); };
}

inline Change ReplaceIn(const std::string& name, const std::string& text, const std::string& with) {
  return [=](const HandMadeBag& bag) { bag.Replace(name, text, with); };
}

inline Change ListsPath(const std::string& path) {
  return AppendTo(kManifest, HandMadeBag::Line("sha256", path, "x"));
}

inline Change DeclaresAs(const std::string& text) { return WriteOver("bagit.txt", text); }

// Adds a payload file that the list calls by another path.
inline Change ListsFileAs(const std::string& name, const std::string& path) {
  return [=](const HandMadeBag& bag) {
    bag.WriteFile(name, "x");
    bag.Append(kManifest, HandMadeBag::Line("sha256", path, "x"));
    bag.Replace(kInfo, "9.2", "10.3");
  };
}

}  // namespace larkspan::console
