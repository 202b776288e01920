// A line of log.txt that says what became of a note, or why a run ended.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace larkspan::console {

// What a line can say of a note, in the words of the log.
enum class NoteFault { kOpen, kDecrypt, kExport, kDeath, kPictures };

struct NoteLine {
  std::uint32_t id = 0;
  NoteFault fault = NoteFault::kOpen;
  std::string cause;  // The library's words; empty where the line has none.
};

inline constexpr std::string_view kWarningLevel = "#WARNING# - ";
inline constexpr std::string_view kErrorLevel = "#ERROR# - ";

// "open", "decrypt", "export", "crash" or "pictures".
const char* StageOf(NoteFault fault);

// Of a message, without its level. No value when it is none of a note.
std::optional<NoteLine> ParseNoteMessage(std::string_view message);

// Of a "(words)" in a message the words; one that was cut has no closing bracket.
std::string WordsInBrackets(std::string_view message);

}  // namespace larkspan::console
