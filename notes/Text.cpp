// Lengths go to the library in 16 bits: longer input is cut in whole characters, and no answer is
// trusted beyond the buffer that it was given.
#include "notes/Text.h"

#include <algorithm>

#include "notes/NotesApi.h"

namespace larkspan {

namespace {

// The longest input whose length in bytes fits the library's 16 bits, in whole characters.
constexpr std::size_t kMaxInputBytes = 0xFFFE;

}  // namespace

std::string WideToNotes(std::wstring_view text) {
  const std::size_t inputBytes = std::min(text.size() * sizeof(wchar_t), kMaxInputBytes);
  std::string notes(kNotesPathCapacity - 1, '\0');
  const std::size_t written = notes_api::OSTranslate(
      notes_api::kTranslateUtf16ToNotes, reinterpret_cast<const char*>(text.data()),
      static_cast<notes_api::WORD>(inputBytes), notes.data(),
      static_cast<notes_api::WORD>(notes.size()));
  notes.resize(std::min(written, notes.size()));
  return notes;
}

std::wstring NotesToWide(std::string_view text, std::size_t maxBytes) {
  const std::size_t inputBytes = std::min(text.size(), kMaxInputBytes);
  std::wstring wide(maxBytes / sizeof(wchar_t), L'\0');
  const std::size_t written = notes_api::OSTranslate(
      notes_api::kTranslateNotesToUtf16, text.data(), static_cast<notes_api::WORD>(inputBytes),
      reinterpret_cast<char*>(wide.data()), static_cast<notes_api::WORD>(maxBytes));
  wide.resize(std::min(written / sizeof(wchar_t), wide.size()));
  return wide;
}

bool FirstEightBytesEqual(std::string_view text, std::string_view other) {
  constexpr notes_api::WORD kLength = 8;
  constexpr notes_api::WORD kOptions = 0;
  return text.size() >= kLength && other.size() >= kLength &&
         notes_api::IntlTextCompare(text.data(), kLength, other.data(), kLength, kOptions) == 0;
}

}  // namespace larkspan
