// The names that the program needs of the Notes library; names alone, for whoever asks whether a
// library has them.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace larkspan {

// Those that the program is linked with, as they stand in nnotes.def: without one of them Windows
// does not start it.
std::span<const std::string_view> LinkedLibraryNames();

// Those that it looks up once it runs: without one of them each export ends at its beginning.
inline constexpr char kSearchExtended3Name[] = "NSFSearchExtended3";
inline constexpr char kPurgeCollectionName[] = "NIFPurgeCollection";
inline constexpr std::array<std::string_view, 2> kLookedUpLibraryNames = {kSearchExtended3Name,
                                                                          kPurgeCollectionName};

}  // namespace larkspan
