// Paths as the lists of a bag tell them, which may be meant to lead elsewhere.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::console {

// Why a path of a list is none of a file within a bag, on any system or on Windows: "leads out of
// the bag". Empty when it may be one.
std::string WhyUnsafe(std::string_view path);

// Whether some part of it is the name of a device of Windows.
bool NamesDevice(std::string_view path);

bool IsInPayload(std::string_view path);

// A line end or percent sign as a list tells it, "%0A", "%0D" or "%25", made what it stands for.
// Nothing else is encoded.
enum class Encoded { kLineEnds, kLineEndsAndPercent };
std::string DecodePath(std::string_view path, Encoded encoded);
std::string EncodePath(std::string_view path);

// The same for paths that differ in letter case or in Unicode normalisation alone.
std::string FoldPath(std::string_view path);

// The whole path in the form that has no limit of 260 characters and in which no name is a device.
std::wstring UnlimitedPath(const std::wstring& path);

}  // namespace larkspan::console
