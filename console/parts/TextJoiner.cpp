#include "console/parts/TextJoiner.h"

#include <io.h>

#include <optional>
#include <utility>
#include <vector>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

namespace {

constexpr std::size_t kPiece = 65536;

// The kinds of lines that are left out, by the words with which they begin.
enum Kind : std::size_t { kSize, kRuntimeEnd, kKinds };
constexpr std::array<std::string_view, kKinds> kBegins = {
    "#WARNING# - Unable to read database quota (",
    "#WARNING# - The end of the Notes runtime was ended by an exception"};

}  // namespace

TextJoiner::TextJoiner(const std::wstring& path) : file_(file_system::Open(path, L"wb")) {}

void TextJoiner::AddFile(const std::wstring& path) {
  Read(path, [&](std::string_view piece) { Add(piece); });
}

void TextJoiner::AddFileOfFirstWorker(const std::wstring& path) {
  AddFileWithout(kRuntimeEnd, path);
}

void TextJoiner::AddFileOfLaterWorker(const std::wstring& path) { AddFileWithout(kSize, path); }

void TextJoiner::AddFileWithout(std::size_t firstKind, const std::wstring& path) {
  std::string rest;
  Read(path, [&](std::string_view piece) {
    rest += piece;
    rest.erase(0, AddLines(rest, firstKind));
  });
  AddLine(rest, firstKind);
}

void TextJoiner::AddLastLinesLeftOut() {
  for (const std::string& line : leftOut_) Add(line);
}

bool TextJoiner::End() {
  const bool isOnDisk =
      file_ && file_system::Flush(file_.get()) && _commit(_fileno(file_.get())) == 0;
  return file_ && file_system::Close(std::move(file_)) && isOnDisk && isGood_;
}

template <typename Take>
void TextJoiner::Read(const std::wstring& path, Take take) {
  SharedFile source(path);
  if (source.state() == FileReading::kMissing) return;
  std::vector<char> piece(kPiece);
  std::optional<std::size_t> size = source.Read(piece);
  for (; size && *size > 0; size = source.Read(piece)) take(std::string_view(piece.data(), *size));
  if (!size) isGood_ = false;
}

// How much of the text are whole lines: those are added.
std::size_t TextJoiner::AddLines(std::string_view text, std::size_t firstKind) {
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n', begin)) {
    AddLine(text.substr(begin, end + 1 - begin), firstKind);
    begin = end + 1;
  }
  return begin;
}

void TextJoiner::AddLine(std::string_view line, std::size_t firstKind) {
  for (std::size_t kind = firstKind; kind < kKinds; ++kind) {
    if (!line.starts_with(kBegins[kind])) continue;
    leftOut_[kind] = line;
    return;
  }
  Add(line);
}

void TextJoiner::Add(std::string_view text) {
  if (!file_ || file_system::Write(file_.get(), text) != text.size()) isGood_ = false;
}

}  // namespace larkspan::console
