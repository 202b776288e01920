#include "console/folder/NoteLine.h"

#include <array>

#include "console/folder/HexDigits.h"

namespace larkspan::console {

namespace {

struct NoteMessage {
  std::string_view begin;
  NoteFault fault;
};

// Behind each beginning stands the note's ID.
constexpr std::array kNoteMessages = {
    NoteMessage{"Major: Error opening note ", NoteFault::kOpen},
    NoteMessage{"Major: Error decrypting note ", NoteFault::kDecrypt},
    NoteMessage{"Major: Error exporting note ", NoteFault::kExport},
    NoteMessage{"Major: Incomplete run detected for note id ", NoteFault::kDeath},
    NoteMessage{"Minor: Detected corrupt document ", NoteFault::kPictures},
};

// In the order of NoteFault.
constexpr std::array kStages = {"open", "decrypt", "export", "crash", "pictures"};

}  // namespace

const char* StageOf(NoteFault fault) { return kStages[static_cast<std::size_t>(fault)]; }

std::optional<NoteLine> ParseNoteMessage(std::string_view message) {
  constexpr std::size_t kIdDigits = 8;
  for (const auto& [begin, fault] : kNoteMessages) {
    if (!message.starts_with(begin)) continue;
    const std::string_view rest = message.substr(begin.size());
    const std::optional<std::uint32_t> id = ParseNoteId(rest.substr(0, kIdDigits));
    if (!id) return std::nullopt;
    return NoteLine{*id, fault, WordsInBrackets(rest.substr(kIdDigits))};
  }
  return std::nullopt;
}

std::string WordsInBrackets(std::string_view message) {
  const std::size_t begin = message.find('(');
  if (begin == message.npos) return {};
  message.remove_prefix(begin + 1);
  if (message.ends_with(')')) message.remove_suffix(1);
  return std::string(message);
}

}  // namespace larkspan::console
