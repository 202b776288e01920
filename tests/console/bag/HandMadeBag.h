// A bag made by hand, in which a test changes what it is about.
#pragma once

#include <string>

#include "console/bag/Bag.h"
#include "tests/support/Lines.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {

class HandMadeBag {
 public:
  // data/a.txt and data/b/c.txt, listed in manifest-sha256.txt, with bagit.txt and bag-info.txt.
  explicit HandMadeBag(const std::string& version = "1.0");

  const std::wstring& folder() const { return folder_.path(); }

  // Names have slashes; folders are made.
  void WriteFile(const std::string& name, const std::string& bytes) const;
  std::string ReadFile(const std::string& name) const;
  void Append(const std::string& name, const std::string& bytes) const;
  void Remove(const std::string& name) const;
  void Rename(const std::string& from, const std::string& to) const;
  void Replace(const std::string& name, const std::string& text, const std::string& with) const;

  // A line of a manifest with the right sum of this text.
  static std::string Line(const std::string& algorithm, const std::string& path,
                          const std::string& text);

  // Lists each other file of the bag's own folder; called last.
  void WriteTagManifest(const std::string& algorithm = "sha256") const;

  BagVerdict Judge() const;

  // The errors ("missing data/a.txt"), then the warnings ("warning uneven").
  Lines Told() const;

 private:
  TempFolder folder_;
};

}  // namespace larkspan::console
