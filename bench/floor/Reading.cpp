#include <expat.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

#include "bench/floor/Files.h"
#include "bench/floor/Floors.h"

namespace larkspan::bench {

namespace {

struct ParserCloser {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using UniqueParser = std::unique_ptr<XML_ParserStruct, ParserCloser>;

void Parse(const std::filesystem::path& path, std::vector<char>& block) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) Fail("open");
  const UniqueParser parser(XML_ParserCreate(nullptr));
  DWORD read = 0;
  do {
    if (ReadFile(file, block.data(), static_cast<DWORD>(block.size()), &read, nullptr) == 0) {
      Fail("read");
    }
    if (XML_Parse(parser.get(), block.data(), static_cast<int>(read), read == 0) == 0) {
      Fail("parse");
    }
  } while (read != 0);
  CloseHandle(file);
}

}  // namespace

std::uint32_t ReadFiles(const std::wstring& folder) {
  std::vector<char> block(65536);
  std::uint32_t files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const std::filesystem::path& path = entry.path();
    if (path.extension() != L".dxl" && path.extension() != L".xml") continue;
    Parse(path, block);
    ++files;
  }
  return files;
}

}  // namespace larkspan::bench
