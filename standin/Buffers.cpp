#include "standin/Buffers.h"

#include <cstring>

#include "standin/CharacterSet.h"
#include "standin/Strict.h"

namespace larkspan::standin {

notes_api::WORD WriteText(std::string_view notes, char* out, std::size_t size) {
  Require(out != nullptr || size == 0, "there is no place for the text");
  const std::string_view whole = FirstWholeCharacters(notes, size);
  if (!whole.empty()) std::memcpy(out, whole.data(), whole.size());
  return static_cast<notes_api::WORD>(whole.size());
}

notes_api::WORD WriteTextWithNul(std::string_view notes, char* out, std::size_t size) {
  Require(out != nullptr && size != 0, "there is no place for the text");
  const notes_api::WORD length = WriteText(notes, out, size - 1);
  out[length] = '\0';
  return length;
}

}  // namespace larkspan::standin
