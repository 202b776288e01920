// bagit.txt: which version of the form a bag has, and how its lists are encoded.
#pragma once

#include <compare>
#include <string>

#include "console/bag/BagFaults.h"
#include "console/bag/BagTree.h"
#include "console/bag/TagText.h"

namespace larkspan::console {

inline constexpr char kDeclarationFile[] = "bagit.txt";

struct BagVersion {
  unsigned major = 0;
  unsigned minor = 0;

  auto operator<=>(const BagVersion&) const = default;
};

inline constexpr BagVersion kVersion1{1, 0};

struct Declaration {
  // Of a bag that does not tell: the version that forbids least, and the usual encoding.
  BagVersion version{0, 97};
  std::string encoding = "UTF-8";
  CodePage codePage = kUtf8CodePage;

  // Whether what version 1.0 says holds for the bag.
  bool IsVersion1() const { return version >= kVersion1; }
};

Declaration ReadDeclaration(const BagTree& tree, BagFaults& faults);

// What the file of a bag of version 1.0 in UTF-8 holds.
std::string DeclarationText();

}  // namespace larkspan::console
