#include "console/bag/FileSums.h"

#include "base/OutputPaths.h"
#include "console/folder/FileCrew.h"

namespace larkspan::console {

bool CalculateSums(const std::wstring& folder, const FileProgress& progress,
                   std::vector<FileSum>& files) {
  constexpr std::size_t kPiece = std::size_t{1} << 20;
  return WorkOnFiles(files.size(), progress, [&] {
    return [&, buffer = std::vector<char>(kPiece)](std::size_t i) mutable {
      FileSum& file = files[i];
      file.digests = DigestsOfFile(output::Join(folder, file.name), file.kinds, buffer);
    };
  });
}

}  // namespace larkspan::console
