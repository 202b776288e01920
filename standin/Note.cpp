#include "standin/Note.h"

#include <charconv>
#include <cstdio>
#include <stdexcept>

namespace larkspan::standin {

namespace {

constexpr std::size_t kWordDigits = 8;

notes_api::DWORD WordAt(std::string_view digits, std::size_t index) {
  const std::string_view word = digits.substr(index * kWordDigits, kWordDigits);
  notes_api::DWORD value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, 16);
  if (error != std::errc() || end != word.data() + word.size()) {
    throw std::runtime_error("\"" + std::string(digits) + "\" is no universal ID");
  }
  return value;
}

}  // namespace

notes_api::WORD Item::type() const {
  return value.size() < 2 ? static_cast<notes_api::WORD>(0)
                          : static_cast<notes_api::WORD>(value[0] | value[1] << 8);
}

const Item* Note::Find(std::string_view name) const {
  for (const Item& item : items) {
    if (item.name == name) return &item;
  }
  return nullptr;
}

NoteSummary SummaryOf(const Note& note) {
  return {note.id, note.noteClass, note.originatorId, note.modified};
}

void SetUniversalId(std::string_view digits, notes_api::OriginatorId* id) {
  if (digits.size() != 4 * kWordDigits) throw std::runtime_error("universal IDs have 32 digits");
  id->file[1] = WordAt(digits, 0);
  id->file[0] = WordAt(digits, 1);
  id->note[1] = WordAt(digits, 2);
  id->note[0] = WordAt(digits, 3);
}

std::string UniversalIdText(const notes_api::OriginatorId& id) {
  char text[4 * kWordDigits + 1];
  std::snprintf(text, sizeof text, "%08X%08X%08X%08X", static_cast<unsigned>(id.file[1]),
                static_cast<unsigned>(id.file[0]), static_cast<unsigned>(id.note[1]),
                static_cast<unsigned>(id.note[0]));
  return text;
}

}  // namespace larkspan::standin
