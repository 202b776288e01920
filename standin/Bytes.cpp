#include "standin/Bytes.h"

namespace larkspan::standin {

void AppendNumber(Bytes* out, std::uint64_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    out->push_back(static_cast<notes_api::BYTE>(number >> (8 * i)));
  }
}

std::uint64_t NumberAt(const notes_api::BYTE* at, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) number |= static_cast<std::uint64_t>(at[i]) << (8 * i);
  return number;
}

notes_api::WORD WordAt(const notes_api::BYTE* at) {
  return static_cast<notes_api::WORD>(NumberAt(at, 2));
}

void AppendText(Bytes* out, std::string_view text) {
  out->insert(out->end(), text.begin(), text.end());
}

void AppendBytes(Bytes* out, const Bytes& bytes) {
  out->insert(out->end(), bytes.begin(), bytes.end());
}

}  // namespace larkspan::standin
