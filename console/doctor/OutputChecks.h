// The folder of --out, before an export makes it. Nothing is left there.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/doctor/Check.h"

namespace larkspan::console {

// The folder itself, or the nearest above it that is there; empty when not even the drive is.
std::wstring NearestFolder(std::wstring folder);

// It can be made, or is there and empty, and can be written to.
CheckFinding CheckFolder(const std::wstring& out);

// The room on its disk, against the size of the database where that is known.
CheckFinding CheckSpace(const std::wstring& out, std::optional<std::uint64_t> databaseSize);
CheckFinding JudgeSpace(std::uint64_t free, std::optional<std::uint64_t> databaseSize);

// The files of an export have paths that the system takes.
CheckFinding CheckPaths(const std::wstring& out);

}  // namespace larkspan::console
