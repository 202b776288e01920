#include "standin/LookupResult.h"

#include <algorithm>

#include "standin/Bytes.h"

namespace larkspan::standin {

namespace {

using notes_api::BYTE;
using notes_api::DWORD;

constexpr DWORD kMark = 0x4C4B5552;
constexpr std::size_t kNumberSize = 4;
constexpr std::size_t kNameAt = kNumberSize;
constexpr std::size_t kMatchesAt = kNameAt + kNumberSize;
constexpr std::size_t kItemSize = 2 * kNumberSize;
constexpr std::size_t kMatchSize = kLookupItems * kItemSize;

bool IsLockedResult(MemoryObject& object) {
  return object.locks() != 0 && object.size() >= kMatchesAt &&
         NumberAt(object.bytes(), kNumberSize) == kMark;
}

}  // namespace

std::unique_ptr<MemoryObject> MakeLookupResult(const std::vector<LookupMatch>& matches) {
  Bytes bytes, texts;
  AppendNumber(&bytes, kMark, kNumberSize);
  AppendNumber(&bytes, matches.size(), kNumberSize);
  const std::size_t textsAt = kMatchesAt + matches.size() * kMatchSize;
  for (const LookupMatch& match : matches) {
    for (const std::string& text : match) {
      AppendNumber(&bytes, textsAt + texts.size(), kNumberSize);
      AppendNumber(&bytes, text.size(), kNumberSize);
      AppendText(&texts, text);
    }
  }
  AppendBytes(&bytes, texts);
  auto memory = std::make_unique<MemoryObject>(bytes.size(), false);
  std::copy(bytes.begin(), bytes.end(), memory->bytes());
  return memory;
}

LookupResult::LookupResult(const Runtime& runtime, const void* address) {
  for (const auto& [handle, object] : runtime.memory.objects()) {
    if (!object->Holds(static_cast<const BYTE*>(address)) || !IsLockedResult(*object)) continue;
    bytes_ = object->bytes();
    size_ = object->size();
  }
  Require(bytes_ != nullptr, "this is no part of a locked lookup result");
}

BYTE* LookupResult::Name() const { return bytes_ + kNameAt; }

DWORD LookupResult::matchCount() const { return static_cast<DWORD>(NumberAt(Name(), kNumberSize)); }

BYTE* LookupResult::NextMatch(const void* previous) const {
  const std::size_t index = previous == nullptr ? 0 : IndexOf(previous) + 1;
  return index < matchCount() ? bytes_ + kMatchesAt + index * kMatchSize : nullptr;
}

std::string_view LookupResult::ItemText(const void* match, std::size_t item) const {
  const BYTE* const at = bytes_ + kMatchesAt + IndexOf(match) * kMatchSize + item * kItemSize;
  const std::size_t offset = NumberAt(at, kNumberSize);
  const std::size_t length = NumberAt(at + kNumberSize, kNumberSize);
  Require(offset + length <= size_, "the lookup result was written to");
  return {reinterpret_cast<const char*>(bytes_) + offset, length};
}

std::size_t LookupResult::IndexOf(const void* match) const {
  const std::size_t count = matchCount();
  Require(kMatchesAt + count * kMatchSize <= size_, "the lookup result was written to");
  for (std::size_t index = 0; index < count; ++index) {
    if (match == bytes_ + kMatchesAt + index * kMatchSize) return index;
  }
  StrictFailure("this is no match of the lookup result");
}

}  // namespace larkspan::standin
