// A reading that stops on text is told apart from one that reached the end, since half a list must
// not pass for the whole.
#include "base/HexNumberFile.h"

#include <cstdio>

#include "base/FileSystem.h"

namespace larkspan {

HexNumberFileEnd ReadHexNumberFile(const std::wstring& path,
                                   const std::function<bool(std::uint32_t)>& visit) {
  file_system::UniqueFile file = file_system::Open(path, L"r");
  if (!file) return HexNumberFileEnd::kNotOpened;
  unsigned int number = 0;
  while (std::fscanf(file.get(), "%X", &number) == 1) {
    if (!visit(number)) return HexNumberFileEnd::kStoppedByVisitor;
  }
  return std::feof(file.get()) != 0 ? HexNumberFileEnd::kEndOfFile
                                    : HexNumberFileEnd::kBeforeEndOfFile;
}

}  // namespace larkspan
