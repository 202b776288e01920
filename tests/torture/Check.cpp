#include "tests/torture/Check.h"

#include <algorithm>

namespace larkspan::torture {

bool IsAbout(const std::string& line, const char* kind, std::uint32_t noteId) {
  const std::string_view message = MessageOf(line);
  return message.starts_with(std::string(kind) + ": ") &&
         message.find(" " + NoteIdText(noteId)) != std::string::npos;
}

bool HasErrorLine(const Lines& log) {
  return std::any_of(log.begin(), log.end(),
                     [](const std::string& line) { return line.starts_with("#ERROR#"); });
}

void CheckExport(const Check& check) {
  CheckNotes(check);
  CheckFolder(check);
  CheckAudit(check);
  check.excuses.AddOverused(check.findings);
}

}  // namespace larkspan::torture
