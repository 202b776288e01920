#include "notes/Utf8Text.h"

#include <algorithm>

#include "notes/NotesApi.h"

namespace larkspan {

namespace {

// The library counts bytes in 16 bits.
constexpr std::size_t kMaxBytes = 0xFFFF;

notes_api::WORD Length(std::size_t bytes) {
  return static_cast<notes_api::WORD>(std::min(bytes, kMaxBytes));
}

}  // namespace

std::string_view NotesToUtf8(std::string_view text, std::span<char> buffer) {
  const std::size_t written =
      notes_api::OSTranslate(notes_api::kTranslateNotesToUtf8, text.data(), Length(text.size()),
                             buffer.data(), Length(buffer.size()));
  return {buffer.data(), std::min(written, buffer.size())};
}

std::string NotesToUtf8(std::string_view text, std::size_t maxBytes) {
  std::string utf8(maxBytes, '\0');
  utf8.resize(NotesToUtf8(text, std::span<char>(utf8)).size());
  return utf8;
}

void ReplaceControlCharacters(std::span<char> utf8) {
  const auto isControl = [](char byte) { return byte >= 1 && byte <= 31; };
  std::replace_if(utf8.begin(), utf8.end(), isControl, ' ');
}

}  // namespace larkspan
