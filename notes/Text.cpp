// Lengths go to the library in 16 bits: longer input is cut in whole characters, and no answer is
// trusted beyond the buffer that it was given.
#include "notes/Text.h"

#include <algorithm>

#include "base/Wipe.h"
#include "notes/NotesApi.h"

namespace larkspan {

namespace {

// The longest input whose length in bytes fits the library's 16 bits, in whole characters.
constexpr std::size_t kMaxInputBytes = 0xFFFE;

std::string TranslateToNotes(std::wstring_view text, std::size_t limit) {
  const std::size_t inputBytes = std::min(text.size() * sizeof(wchar_t), kMaxInputBytes);
  std::string notes(limit, '\0');
  const std::size_t written = notes_api::OSTranslate(
      notes_api::kTranslateUtf16ToNotes, reinterpret_cast<const char*>(text.data()),
      static_cast<notes_api::WORD>(inputBytes), notes.data(), static_cast<notes_api::WORD>(limit));
  notes.resize(std::min(written, notes.size()));
  return notes;
}

}  // namespace

bool WideToNotes(std::wstring_view text, std::string& notes) {
  // A cut answer ends at most one character, of three bytes, before its limit. Only one that could
  // be cut is asked for again, in full.
  constexpr std::size_t kLongestCharacter = 3;
  constexpr std::size_t kLimit = kNotesPathCapacity - 1;
  notes = TranslateToNotes(text, kLimit);
  if (notes.empty()) return text.empty();
  if (notes.size() + kLongestCharacter <= kLimit) return true;
  std::string whole = TranslateToNotes(text, kLimit * kLongestCharacter);
  const bool isWhole = whole.size() == notes.size();
  Wipe(whole);
  return isWhole;
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
