// The library takes the error number alone; the two top bits say where an error came from and have
// no words.
#include "notes/Status.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "notes/Text.h"

namespace larkspan {

std::wstring StatusText(Status status) {
  constexpr std::size_t kMaxWideBytes = 510;
  if (status.words() != nullptr) return status.words();
  std::array<char, 255> text{};
  const std::size_t length = notes_api::OSLoadString(0, status.ErrorNumber(), text.data(),
                                                     static_cast<notes_api::WORD>(text.size()));
  return NotesToWide(std::string_view(text.data(), std::min(length, text.size())), kMaxWideBytes);
}

}  // namespace larkspan
