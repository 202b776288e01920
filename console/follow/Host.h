// What this machine says of itself and of its files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace larkspan::console {

// UTF-8; empty when the system does not tell.
std::string HostName();
std::string UserName();

// The product version in the resource of that program's file.
std::string FileVersion(const std::wstring& path);

// The four numbers of the file's own version there, in whatever language it has texts: "14.0.1.2".
std::string FileVersionNumbers(const std::wstring& path);

// Bytes that this user may still write on the folder's volume; none when the system does not tell.
std::optional<std::uint64_t> FreeBytes(const std::wstring& folder);

// Milliseconds of a clock that only grows.
std::uint64_t Now();

// By the local clock, "14:05", so long ago.
std::string LocalClockBefore(std::uint64_t milliseconds);

// A number that changes when temp.tmp does. The file itself is not opened: the folder is asked.
std::uint64_t TemporaryFileMark(const std::wstring& folder);

}  // namespace larkspan::console
