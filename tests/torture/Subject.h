// What is exported over and over again, and how.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/torture/Options.h"

namespace larkspan::torture {

struct Subject {
  std::string name;
  std::wstring dataFolder;
  std::wstring database;
  bool archive = true;
  bool fullAccess = false;
  // Where an earlier worker died; the faults strike the worker that goes on from there. Zero: they
  // strike the first worker.
  std::uint32_t resumeAt = 0;
};

// Those that the command line asks for. Of the small database with notes of each kind: as an
// archive, as a plain export with full access, and as an archive that is resumed in the middle. Or
// of the sample databases of the stand-in library: as archives and as plain exports.
std::vector<Subject> WantedSubjects(const Options& options);

// The data folder of the small database.
inline constexpr wchar_t kOwnData[] = L"" LARKSPAN_TORTURE_DATA_FOLDER;

// The fault plan with which the earlier worker dies, by an action of fault plans, in the middle of
// the text of the note.
std::string PlanOfTheEarlierWorker(const Subject& subject, const std::string& action);

// The exit code of an earlier worker that died of an access violation.
inline constexpr std::uint32_t kCrashExitCode = 0xC0000005;

// The ID file that opens sealed notes, in the data folder, and its password; the small database's
// is the one below.
std::wstring IdFileOf(const Subject& subject);
inline constexpr wchar_t kIdFile[] = L"reader.id";
inline constexpr wchar_t kPassword[] = L"Rittersporn";

}  // namespace larkspan::torture
