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

std::map<std::uint32_t, Variant> IdentifyFiles(const Reference& reference, const Outcome& clean) {
  std::map<std::uint32_t, Variant> files;
  for (const ReferenceNote& note : reference.notes) {
    const auto file = clean.tree.find(note.folder + NoteIdText(note.id) + ".dxl");
    if (file == clean.tree.end()) continue;
    const auto variant = note.texts.find(file->second);
    if (variant != note.texts.end()) files[note.id] = variant->second;
  }
  return files;
}

void CheckExport(const Check& check) {
  CheckNotes(check);
  CheckFolder(check);
  CheckAudit(check);
}

}  // namespace larkspan::torture
