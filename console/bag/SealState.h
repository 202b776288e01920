// Where a folder is on its way from an export to a bag.
#pragma once

#include <string>

namespace larkspan::console {

enum class SealState {
  kUnsealed,  // Nothing is begun.
  kMoving,    // Some of the export lies in data.new\, the rest in the folder itself.
  kMoved,     // All of it lies in data\, and bagit.txt is not there yet.
  kSealed,
};

SealState SealStateOf(const std::wstring& folder);

// A sentence when a sealing was begun there and has not come to its end; else empty. Until it has,
// the folder is neither an export nor a bag, and nothing but a sealing is to work there.
std::string WhySealIsUnfinished(const std::wstring& folder);

}  // namespace larkspan::console
