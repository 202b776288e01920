// Entry points for text: translation, status texts, paths, names, comparison.
#include <cstring>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/CharacterSet.h"
#include "standin/Names.h"
#include "standin/Paths.h"
#include "standin/StatusCodes.h"
#include "standin/StatusTexts.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

std::string Translated(WORD mode, std::string_view in, WORD limit) {
  switch (mode) {
    case kTranslateNotesToUtf16:
      return NotesToUtf16Bytes(in, limit);
    case kTranslateNotesToUtf8:
      return NotesToUtf8(in, limit);
    case kTranslateUtf16ToNotes:
      Require(in.size() % 2 == 0, "UTF-16 has an even number of bytes");
      return Utf16BytesToNotes(in, limit);
    default:
      StrictFailure("unknown translation mode " + std::to_string(mode));
  }
}

}  // namespace

WORD LARKSPAN_NOTES_CALL OSLoadString(DHANDLE module, STATUS code, char* out, WORD size) {
  const Call call("OSLoadString", {}, Allowed::kAnyTime);
  if (call.stops()) return 0;
  Require(module == 0, "the module is not zero");
  return WriteText(StatusText(code), out, size);
}

WORD LARKSPAN_NOTES_CALL OSTranslate(WORD mode, const char* in, WORD length, char* out, WORD size) {
  const Call call("OSTranslate", {}, Allowed::kAnyTime);
  if (call.stops()) return 0;
  Require(in != nullptr || length == 0, "the text to translate is missing");
  Require(out != nullptr || size == 0, "there is no place for the translation");
  const std::string translated = Translated(mode, {in, length}, size);
  if (!translated.empty()) std::memcpy(out, translated.data(), translated.size());
  return static_cast<WORD>(translated.size());
}

STATUS LARKSPAN_NOTES_CALL OSPathNetParse(const char* path, char* port, char* server, char* file) {
  const Call call("OSPathNetParse", {.path = PeekText(path, kPathSize)});
  if (call.stops()) return call.status();
  const NetPath parts = SplitNetPath(RequireText(path, kPathSize));
  WriteTextWithNul(parts.port, port, kNameSize);
  WriteTextWithNul(parts.server, server, kNameSize);
  WriteTextWithNul(parts.file, file, kNameSize);
  return kSuccess;
}

// The limit counts the text alone.
STATUS LARKSPAN_NOTES_CALL DNAbbreviate(DWORD flags, const char* nameTemplate, const char* name,
                                        char* out, WORD limit, WORD* length) {
  const Call call("DNAbbreviate");
  if (call.stops()) return call.status();
  const std::string_view text = RequireText(name, kTextSize);
  call.runtime().ledger.RecordLast(
      "DNAbbreviate", {{"flags", flags}, {"name", NotesToUtf8(text)}, {"limit", limit}});
  Require(flags == 0 && nameTemplate == nullptr, "a reserved argument is not zero");
  const std::optional<std::string> abbreviated = AbbreviatedName(text);
  if (!abbreviated) return kNameDamaged;
  WriteIfWanted(length, WriteTextWithNul(*abbreviated, out, std::size_t{limit} + 1));
  return kSuccess;
}

int LARKSPAN_NOTES_CALL IntlTextCompare(const char* text1, WORD length1, const char* text2,
                                        WORD length2, WORD options) {
  const Call call("IntlTextCompare");
  if (call.stops()) return 0;
  call.runtime().ledger.RecordLast(
      "IntlTextCompare", {{"length1", length1}, {"length2", length2}, {"options", options}});
  Require(text1 != nullptr && text2 != nullptr, "a text is missing");
  return NotesToUtf16({text1, length1}).compare(NotesToUtf16({text2, length2}));
}

}  // namespace larkspan::notes_api
