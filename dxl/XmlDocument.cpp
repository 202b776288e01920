// How a document gets to its final name: it is printed into a temporary file without a name, copied
// as text into temp.tmp when it is complete, and temp.tmp is moved. A failure at any step leaves
// what stood under the final name.
#include "dxl/XmlDocument.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "base/FileSystem.h"
#include "dxl/StagedFile.h"
#include "notes/StatusCodes.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr bool kNotCompact = false;

// No text in UTF-8 holds this byte, so it ends what can be taken for text.
constexpr char kNeverInUtf8 = '\xFF';

// Copies from where the source stands to its end, or to the first byte that is no text.
bool CopyText(std::FILE* source, std::FILE* target) {
  std::array<char, 65536> block;
  while (true) {
    const std::size_t length = std::fread(block.data(), 1, block.size(), source);
    const char* end = std::find(block.data(), block.data() + length, kNeverInUtf8);
    const auto textLength = static_cast<std::size_t>(end - block.data());
    if (file_system::Write(target, {block.data(), textLength}) < textLength) return false;
    if (textLength < block.size()) return std::ferror(source) == 0;
  }
}

}  // namespace

XmlDocument::XmlDocument()
    : file_(file_system::OpenTemporary()), printer_(file_.get(), kNotCompact) {
  printer_.PushDeclaration("xml version='1.0' encoding='utf-8'");
}

Status XmlDocument::CopyToStagedFile() {
  if (!file_ || !file_system::Flush(file_.get())) return kOutputNotWritten;
  std::rewind(file_.get());
  file_system::UniqueFile staged = file_system::Open(StagedFilePath(), L"w");
  if (!staged) return kOutputNotWritten;
  const bool copied = CopyText(file_.get(), staged.get());
  const bool closed = file_system::Close(std::move(staged));
  if (copied && closed) return Status();
  DeleteStagedFile();
  return kOutputNotWritten;
}

Status XmlDocument::Place(const std::wstring& path) {
  if (const Status status = ClearStagedFile(); !status.ok()) return status;
  if (const Status status = CopyToStagedFile(); !status.ok()) return status;
  return PlaceStagedFile(path, file_system::Earlier::kIsReplaced);
}

Status XmlDocument::Save(const std::wstring& path) {
  const Status status = Place(path);
  if (!status.ok()) LogWarning(L"Unable to write %s", path.c_str());
  return status;
}

}  // namespace larkspan
