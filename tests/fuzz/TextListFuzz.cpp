// A text list behind its type word. The type word stands in front of the input, so that no input
// is of another type.
#include <cstring>
#include <vector>

#include "notes/NotesApi.h"
#include "notes/Values.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

constexpr std::size_t kSmallestList = 6;

void CheckList(Bytes value) {
  TextList list(value);
  Require(list.count() == WordIn(value, 2), "the count is that of the value");
  std::size_t end = 4 + 2 * std::size_t{list.count()};
  std::size_t given = 0;
  for (std::string_view text; list.Next(text); ++given) {
    Require(text.size() == WordIn(value, 4 + 2 * given), "an entry has its length");
    Require(IsInside(std::as_bytes(std::span(text)), value), "an entry is inside the value");
    Require(text.empty() || TextIn(value).substr(end).data() == text.data(),
            "an entry stands behind the one before");
    end += text.size();
  }
  Require(given <= list.count() && end <= value.size() + (given == 0 ? end : 0),
          "no more is given than there is");
  const bool nextLengthIsInside = 4 + 2 * (given + 1) <= value.size();
  Require(given == list.count() || !nextLengthIsInside ||
              end + WordIn(value, 4 + 2 * given) > value.size(),
          "all is given that there is");
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::StartLibrary();
  std::vector<std::byte> value(sizeof(notes_api::WORD) + size);
  std::memcpy(value.data(), &notes_api::kTypeTextList, sizeof(notes_api::WORD));
  if (size > 0) std::memcpy(value.data() + sizeof(notes_api::WORD), data, size);
  if (value.size() >= fuzz::kSmallestList) fuzz::CheckList(value);
  return 0;
}
