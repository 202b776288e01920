#include "standin/Names.h"

#include <algorithm>

#include "standin/CharacterSet.h"

namespace larkspan::standin {

namespace {

// Whether it is well; takes the word away if there is one.
bool AbbreviatePart(std::string_view* part) {
  const std::size_t sign = part->find('=');
  if (sign == std::string_view::npos) return true;
  const bool isWell = sign != 0 && part->find('=', sign + 1) == std::string_view::npos;
  part->remove_prefix(sign + 1);
  return isWell;
}

}  // namespace

// In UTF-8, because bytes of the Notes character set that look like signs may be halves of
// characters.
std::optional<std::string> AbbreviatedName(std::string_view name) {
  const std::string utf8 = NotesToUtf8(name);
  std::string abbreviated;
  for (std::size_t start = 0; start <= utf8.size();) {
    const std::size_t end = std::min(utf8.find('/', start), utf8.size());
    std::string_view part = std::string_view(utf8).substr(start, end - start);
    if (!AbbreviatePart(&part)) return std::nullopt;
    if (start != 0) abbreviated += '/';
    abbreviated += part;
    start = end + 1;
  }
  return Utf8ToNotes(abbreviated);
}

}  // namespace larkspan::standin
