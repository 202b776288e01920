#include "standin/NamesList.h"

#include <algorithm>
#include <cstring>

#include "standin/Strict.h"

namespace larkspan::standin {

namespace {

constexpr std::size_t kZeroesOffset = 2;
constexpr std::size_t kZeroes = 8;
constexpr std::size_t kAuthenticationOffset = 12;
constexpr std::size_t kNameOffset = 16;

}  // namespace

NamesList ReadNamesList(MemoryObject& memory) {
  Require(memory.size() > kNameOffset, "the names list is too short");
  const notes_api::BYTE* const bytes = memory.bytes();
  notes_api::WORD count = 0;
  std::memcpy(&count, bytes, sizeof count);
  Require(count == 1, "the names list does not hold one name");
  Require(std::count(bytes + kZeroesOffset, bytes + kZeroesOffset + kZeroes, 0) == kZeroes,
          "the names list has no zeroes after its count");
  NamesList list;
  std::memcpy(&list.authentication, bytes + kAuthenticationOffset, sizeof list.authentication);
  const auto* const name = reinterpret_cast<const char*>(bytes + kNameOffset);
  const std::size_t room = memory.size() - kNameOffset;
  const void* const end = std::memchr(name, 0, room);
  Require(end == name + room - 1, "the name in the names list does not end where the list does");
  list.name.assign(name, room - 1);
  return list;
}

}  // namespace larkspan::standin
