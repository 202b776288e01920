// How a document gets to its final name:
//   1. It is printed into a temporary file without a name.
//   2. When it is complete it is copied, as text, to a stage beside the final name.
//   3. The stage takes the final name in one step, in place of an earlier file.
//   4. Where there can be no stage, or it may not take the name (a reader holds the earlier
//      file), the document is copied straight to the final name.
// A copy that fails half way is deleted. So a file under its final name is whole, but for a process
// that is ended within step 4. Nothing is tried twice: what refuses a stage or a name is no lock
// that passes.
#include "dxl/XmlDocument.h"

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include "base/FileSystem.h"
#include "base/LineEnds.h"
#include "base/OutputPaths.h"
#include "notes/StatusCodes.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// No text in UTF-8 holds this byte, so it ends what can be taken for text.
constexpr char kNeverInUtf8 = '\xFF';

// Copies from where the source stands to its end, or to the first byte that is no text. The C
// runtime would make the line ends too, but write the text in pieces of a few kilobytes.
bool CopyText(std::FILE* source, std::FILE* target) {
  std::array<char, 65536> block;
  std::string lines;
  while (true) {
    const std::string_view read(block.data(), std::fread(block.data(), 1, block.size(), source));
    const std::string_view text = read.substr(0, read.find(kNeverInUtf8));
    lines.clear();
    AppendWithCarriageReturns(text, lines);
    if (file_system::Write(target, lines) < lines.size()) return false;
    if (text.size() < block.size()) return std::ferror(source) == 0;
  }
}

}  // namespace

XmlDocument::XmlDocument() : file_(file_system::OpenTemporary()), printer_(file_.get()) {
  printer_.PushDeclaration("xml version='1.0' encoding='utf-8'");
}

bool XmlDocument::IsPrinted() {
  return file_ != nullptr && printer_.Finish() && file_system::Flush(file_.get());
}

XmlDocument::Copy XmlDocument::CopyTo(const std::wstring& path) {
  file_system::UniqueFile target = file_system::Open(path, L"wb");
  if (!target) return Copy::kRefused;
  std::rewind(file_.get());
  const bool copied = CopyText(file_.get(), target.get());
  const bool closed = file_system::Close(std::move(target));
  if (copied && closed) return Copy::kComplete;
  file_system::Delete(path);
  return Copy::kFailed;
}

bool XmlDocument::Place(const std::wstring& path) {
  const std::wstring stage = output::StageOf(path);
  const Copy copy = CopyTo(stage);
  if (copy == Copy::kFailed) return false;
  if (copy == Copy::kComplete) {
    if (file_system::Move(stage, path, file_system::Earlier::kIsReplaced)) return true;
    file_system::Delete(stage);
  }
  return CopyTo(path) == Copy::kComplete;
}

Status XmlDocument::Save(const std::wstring& path) {
  if (IsPrinted() && Place(path)) return Status();
  LogWarning(L"Unable to write %s", path.c_str());
  return kOutputNotWritten;
}

}  // namespace larkspan
