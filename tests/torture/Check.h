// What a run is held against. The checks look at the files and lines that it left, with code of
// their own.
#pragma once

#include <cstdint>
#include <string>

#include "tests/torture/Excuses.h"
#include "tests/torture/ExportStage.h"
#include "tests/torture/Reference.h"

namespace larkspan::torture {

struct Check {
  const Subject& subject;
  const Reference& reference;
  const Outcome& clean;
  const Outcome& run;
  Excuses& excuses;
  std::uint16_t status = 0;      // What calls failed with, if they did.
  bool endedEarly = false;       // A line, or the death of a worker between two notes, says so.
  std::string mayStay{};         // A file that was to be deleted.
  bool isListUnread = false;     // Nobody could open or read it to count the documents.
  bool isLogUnread = false;      // Likewise, to count the failures.
  bool mayLackMismatch = false;  // The line about counts that do not agree may be lost.
  bool mayLeaveHalf = false;     // It died in the middle of a file, and no later worker cleared up.
  Lines& findings;

  void Find(const std::string& finding) const { findings.push_back(finding); }
  bool Explains(unsigned consequence, const std::string& thing, int calls = 1) const {
    return excuses.Explain(consequence, thing, calls);
  }
};

// The message of a line of the run log about that note, or nothing when it is about another one:
// "Major: ..." or "Minor: ...".
bool IsAbout(const std::string& line, const char* kind, std::uint32_t noteId);

bool HasErrorLine(const Lines& log);

// Whether there is a file of the note, a raw copy left aside.
bool HasFileOf(const ReferenceNote& note, const Outcome& run);

// Likewise of any of the notes.
bool HasFileOfAny(const std::vector<ReferenceNote>& notes, const Outcome& run);

// All that an export left behind is in order: the three below, and no excuse explained too much.
void CheckExport(const Check& check);

// Every note has its whole file, or a line that tells why not.
void CheckNotes(const Check& check);

// db.dxl, acl.dxl, views, index files; nothing else lies about.
void CheckFolder(const Check& check);

// The audit report, counted again, and what the log says of it.
void CheckAudit(const Check& check);

}  // namespace larkspan::torture
