// fetch.txt: files of the payload that were left out and are to be fetched from elsewhere. Nothing
// is ever fetched.
#pragma once

#include <set>
#include <string>

#include "console/bag/BagFaults.h"
#include "console/bag/BagTree.h"
#include "console/bag/Declaration.h"

namespace larkspan::console {

// The paths it lists; what is wrong with its lines is told.
std::set<std::string> ReadFetchList(const BagTree& tree, const Declaration& declaration,
                                    BagFaults& faults);

}  // namespace larkspan::console
