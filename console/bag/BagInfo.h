// bag-info.txt: what a bag tells about itself, for people, and how much its payload is.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/bag/BagFaults.h"
#include "console/bag/BagTree.h"
#include "console/bag/Declaration.h"

namespace larkspan::console {

inline constexpr char kBagInfoFile[] = "bag-info.txt";

struct BagInfoElement {
  std::string label;
  std::string value;  // The lines of a folded one are joined by line feeds.
};

// The elements in their order; empty when there is no such file. What is wrong with them is told.
std::vector<BagInfoElement> ReadBagInfo(const BagTree& tree, const Declaration& declaration,
                                        BagFaults& faults);

struct PayloadSize {
  std::uint64_t bytes = 0;
  std::uint64_t files = 0;
};

PayloadSize PayloadSizeOf(const BagTree& tree);

// Holds the sum of the payload's octets and files against what is there.
void CheckPayloadSize(const std::vector<BagInfoElement>& elements, const PayloadSize& size,
                      const Declaration& declaration, BagFaults& faults);

// "12345.67", as an element tells it.
std::string OctetsAndFiles(const PayloadSize& size);

// The file's text. Control characters that values bring along are blanks.
std::string BagInfoText(const std::vector<BagInfoElement>& elements);

}  // namespace larkspan::console
