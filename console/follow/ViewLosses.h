// What a run says of its views: no index and no log knows them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "console/follow/RunState.h"

namespace larkspan::console {

// The views that a worker took along when it ended among them: the one that it was at, and those
// that it had not reached, which have no ID.
std::vector<Loss> LostViews(const std::wstring& folder, const RunState& state,
                            const std::string& cause);

// Gives those without an ID the IDs of the views in the folder `design` that were never begun, as
// far as they go.
void NameUnreachedViews(const std::wstring& folder, const std::vector<std::uint32_t>& begun,
                        std::vector<Loss>& lost);

// Tells of views that were begun and have no file: hidden ones, and those that cannot be read.
std::optional<Warning> WarnOfViewsWithoutFile(const std::wstring& folder,
                                              const std::vector<std::uint32_t>& begun,
                                              const std::vector<Loss>& lost);

}  // namespace larkspan::console
