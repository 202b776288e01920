// What was found about a bag, in words and as JSON.
#pragma once

#include <string>

#include "console/account/AccountJson.h"
#include "console/bag/Bag.h"

namespace larkspan::console {

// One sentence without a line end.
std::string BagVerdictText(const BagVerdict& verdict);

// The sentence, and every error and warning on a line of its own; of very many of a kind the first
// twenty. Control characters that paths bring along are question marks.
std::string BagText(const BagVerdict& verdict);

Json BagToJson(const BagVerdict& verdict);

}  // namespace larkspan::console
