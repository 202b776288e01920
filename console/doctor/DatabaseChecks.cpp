#include "console/doctor/DatabaseChecks.h"

#include "console/doctor/RuntimeChecks.h"
#include "console/folder/AuditFile.h"
#include "console/folder/TemporaryFolder.h"
#include "console/show/StatusParts.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

constexpr char kLookAtIt[] =
    "Open the database in Notes on this machine as this user; where it is damaged, have it "
    "repaired "
    "first.";

std::string OpeningAdvice(const DoctorRequest& request) {
  const std::string advice =
      "See that --server and --path name the database and that this user may "
      "read it";
  if (request.run.fullAccess) return advice + ", and be an administrator with full access.";
  return advice + "; one that only administrators may open needs --full-access.";
}

// The first that is about the size, or the first that is not.
std::string WarningOf(const DatabaseTrial& trial, bool aboutSize) {
  constexpr std::string_view kNoSize = "Unable to read database quota";
  for (const std::string& warning : trial.warnings) {
    if (warning.starts_with(kNoSize) == aboutSize) return warning;
  }
  return {};
}

}  // namespace

DatabaseTrial TryDatabase(const TrialSurroundings& around, std::string& whyNot) {
  const TemporaryFolder folder;
  if (folder.path().empty()) {
    whyNot = "no folder can be made for temporary files";
    return {};
  }
  DatabaseTrial trial;
  trial.end = RunFirstWorker(around, around.request.run, folder.path());
  trial.error = LastErrorIn(folder.path());
  trial.warnings = WarningsIn(folder.path());
  trial.size = ReadAuditFile(folder.path()).block.sizeBefore;
  trial.list = ReadNoteList(folder.path());
  return trial;
}

CheckFinding JudgeOpening(const DatabaseTrial& trial, const DoctorRequest& request) {
  const std::string name = DatabaseName(request.run.server, request.run.path);
  if (trial.end.isOpen) return Passed(name + " opens");
  if (!trial.error.empty()) return Failed(name + ": " + trial.error, OpeningAdvice(request));
  if (trial.end.kind != TrialEnd::Kind::kOwnEnd) {
    return JudgeBadEnd(trial.end, request.timeoutMilliseconds);
  }
  return Failed(name + " was not opened, and nothing says why", kLookAtIt);
}

CheckFinding JudgeSize(const DatabaseTrial& trial) {
  if (!trial.size) {
    const std::string quota = WarningOf(trial, true);
    return Warned("the library does not tell it" + (quota.empty() ? "" : ": " + quota),
                  "Look at the size in Notes, and hold it against the room on the disk yourself.");
  }
  return Passed(BytesText(*trial.size) + " (" + GroupedText(*trial.size) + " bytes)");
}

CheckFinding JudgeList(const DatabaseTrial& trial, const DoctorRequest& request) {
  if (!trial.HasList()) {
    if (!trial.error.empty()) return Failed(trial.error, kLookAtIt);
    if (trial.end.kind == TrialEnd::Kind::kOwnEnd) return Failed("no list was made", kLookAtIt);
    return JudgeBadEnd(trial.end, request.timeoutMilliseconds);
  }
  const std::string detail = CountText(trial.list.ids.size(), "note", "notes");
  const std::string warning = WarningOf(trial, false);
  if (warning.empty()) return Passed(detail);
  return Warned(detail + "; " + warning, kLookAtIt);
}

}  // namespace larkspan::console
