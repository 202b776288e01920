#include "tests/torture/kill/TreeCheck.h"

#include <algorithm>

#include "tests/support/LogMessages.h"

namespace larkspan::torture {

namespace {

const std::string kIncomplete = std::string("#WARNING# - ") + message::kIncompleteRun;
const std::string kMismatch = std::string("#WARNING# - ") + message::kCountMismatch;
const std::string kNotExported = std::string("#WARNING# - ") + message::kNoteNotExported;
constexpr char kOutsideANote[] = "#ERROR# - Child process returned 57005 outside a note; ";
// A worker that dies while it is made is none that could be started.
constexpr char kNotCreated[] = "#ERROR# - CreateProcess failed (";

bool IsAmong(const NoteIds& notes, std::uint32_t note) {
  return std::find(notes.begin(), notes.end(), note) != notes.end();
}

std::string Names(const NoteIds& notes) {
  std::string text;
  for (const std::uint32_t note : notes) text += " " + NoteIdText(note);
  return text.empty() ? " none" : text;
}

bool Has(const OutputTree& tree, const std::string& name) { return tree.contains(name); }

std::size_t CountPresent(const OutputTree& tree, const Lines& files) {
  return static_cast<std::size_t>(std::count_if(
      files.begin(), files.end(), [&](const std::string& name) { return Has(tree, name); }));
}

bool IsWhole(const OutputTree& tree, const Lines& files) {
  return CountPresent(tree, files) == files.size();
}

void CheckNotes(const CleanRun& clean, const OutputTree& tree, const NoteIds& lost,
                Lines& findings) {
  bool isOver = false;  // A note is missing because the run ended before it.
  for (const auto& [note, files] : clean.notes) {
    const std::size_t present = CountPresent(tree, files);
    if (IsAmong(lost, note)) continue;
    if (present == files.size() && !isOver) continue;
    if (present == 0 && !IsFinished(tree)) {
      isOver = true;
    } else {
      findings.push_back("note " + NoteIdText(note) +
                         " is there only in part, or is missing for nothing");
    }
  }
}

// A note has its line from its opening on, which its marker precedes.
void CheckUnidIndex(const CleanRun& clean, const OutputTree& tree, const NoteIds& lost,
                    Lines& findings) {
  const Lines expected = LinesOf(clean.tree, "unidindex.txt");
  const Lines lines = LinesOf(tree, "unidindex.txt");
  if (!std::includes(expected.begin(), expected.end(), lines.begin(), lines.end())) {
    findings.push_back("unidindex.txt has a line that is not one of the clean run, or one twice");
    return;
  }
  const NoteIds indexed = NotesBehind(lines, "");
  for (const auto& [note, files] : clean.notes) {
    const bool isThere = CountPresent(tree, files) > 0;
    if (isThere && !IsAmong(indexed, note)) {
      findings.push_back("note " + NoteIdText(note) + " is not in unidindex.txt");
    }
    if (IsAmong(indexed, note) && !IsWhole(tree, files) && !IsAmong(lost, note)) {
      findings.push_back("note " + NoteIdText(note) +
                         " was begun, and nothing tells that it is lost");
    }
  }
}

void CheckFinishedFolder(const CleanRun& clean, const OutputTree& tree, Lines& findings) {
  if (Has(tree, "temp.tmp")) findings.push_back("temp.tmp is left of a run that is finished");
  if (ContentOf(tree, "idtable.txt") != ContentOf(clean.tree, "idtable.txt")) {
    findings.push_back("idtable.txt is not that of the clean run");
  }
  for (const auto& [name, content] : clean.tree) {
    const bool isNote =
        name.starts_with("data/") || name.starts_with("design") || name.starts_with("profile/");
    if (IsFinalName(name) && !isNote && !Has(tree, name)) findings.push_back(name + " is missing");
  }
}

// But for the lines that are expected.
void CheckNoOtherWarnings(const Lines& log, const Lines& expected, Lines& findings) {
  for (const std::string& line : log) {
    if (line.starts_with("#DEBUG# - ")) continue;
    const bool isExpected =
        std::any_of(expected.begin(), expected.end(),
                    [&](const std::string& beginning) { return line.starts_with(beginning); });
    if (!isExpected) findings.push_back("the log says: " + line);
  }
}

NoteIds NotesWithFirstFile(const CleanRun& clean, const OutputTree& tree) {
  NoteIds notes;
  for (const auto& [note, files] : clean.notes) {
    if (Has(tree, files.front())) notes.push_back(note);
  }
  return notes;
}

// What was appended to the log since the earlier tree.
Lines LogSince(const OutputTree& before, const OutputTree& tree) {
  Lines log = LinesOf(tree, "log.txt");
  const std::size_t old = std::min(LinesOf(before, "log.txt").size(), log.size());
  log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(old));
  return log;
}

}  // namespace

Lines CheckFinalFiles(const CleanRun& clean, const OutputTree& tree) {
  Lines findings;
  for (const auto& [name, content] : tree) {
    if (IsFinalName(name) && (!Has(clean.tree, name) || clean.tree.at(name) != content)) {
      findings.push_back(name + " is not that of the clean run");
    }
  }
  return findings;
}

bool IsFinished(const OutputTree& tree) {
  return ContentOf(tree, "audit.txt").find("Database size after archive : ") != std::string::npos;
}

Lines CheckResumed(const CleanRun& clean, const OutputTree& tree, const NoteIds& lost) {
  Lines findings = CheckFinalFiles(clean, tree);
  if (Has(tree, "marker.txt")) findings.emplace_back("marker.txt is left");
  CheckNotes(clean, tree, lost, findings);
  CheckUnidIndex(clean, tree, lost, findings);
  if (IsFinished(tree)) CheckFinishedFolder(clean, tree, findings);
  return findings;
}

std::size_t CountEndsOutsideANote(const OutputTree& tree) {
  const Lines log = LinesOf(tree, "log.txt");
  return static_cast<std::size_t>(
      std::count_if(log.begin(), log.end(), [](const std::string& line) {
        return line.starts_with(kOutsideANote) || line.starts_with(kNotCreated);
      }));
}

Lines CheckLog(const OutputTree& tree, const NoteIds& lost) {
  Lines findings;
  const Lines log = LinesOf(tree, "log.txt");
  const NoteIds told = NotesBehind(log, kIncomplete);
  if (told != lost) findings.push_back("the log tells of other lost notes:" + Names(told));
  CheckNoOtherWarnings(log, {kIncomplete, kMismatch, kOutsideANote, kNotCreated}, findings);
  if (!IsFinished(tree) && CountEndsOutsideANote(tree) == 0) {
    findings.emplace_back("the run is not finished, and the log does not say so");
  }
  return findings;
}

Lines CheckNewRun(const CleanRun& clean, const OutputTree& before, const OutputTree& tree) {
  Lines findings = CheckFinalFiles(clean, tree);
  const Lines log = LogSince(before, tree);
  const NoteIds there = NotesWithFirstFile(clean, before);
  const NoteIds told = NotesBehind(log, kNotExported);
  if (told != there) findings.push_back("the log tells of other notes:" + Names(told));
  for (const auto& [note, files] : clean.notes) {
    // Where the first file is there already, the raw copy is not come to.
    const bool mayLack = IsAmong(there, note) && !IsWhole(before, files);
    if (!IsWhole(tree, files) && !mayLack) findings.push_back(NoteIdText(note) + " is missing");
  }
  if (ContentOf(tree, "unidindex.txt") != ContentOf(clean.tree, "unidindex.txt")) {
    findings.emplace_back("unidindex.txt is not that of the clean run");
  }
  if (Has(tree, "marker.txt")) findings.emplace_back("marker.txt is left");
  CheckFinishedFolder(clean, tree, findings);
  Lines expected = {kNotExported, kMismatch, std::string("#WARNING# - ") + message::kFileNotMoved};
  if (Has(before, "acl.dxl")) expected.push_back(std::string("#WARNING# - ") + message::kNoAcl);
  CheckNoOtherWarnings(log, expected, findings);
  return findings;
}

}  // namespace larkspan::torture
