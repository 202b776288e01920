// Reading of a text file that holds 32-bit hexadecimal numbers, one a line.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace larkspan {

enum class HexNumberFileEnd {
  kNotOpened,         // The file is missing or cannot be read.
  kEndOfFile,         // Every number was read.
  kBeforeEndOfFile,   // The reading stopped on text that is no number.
  kStoppedByVisitor,  // The visitor wanted no more.
};

// Hands each number of the file to the visitor, in order, until one fails to read or the visitor
// returns false.
HexNumberFileEnd ReadHexNumberFile(const std::wstring& path,
                                   const std::function<bool(std::uint32_t)>& visit);

}  // namespace larkspan
