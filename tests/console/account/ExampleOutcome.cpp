#include "tests/console/account/ExampleOutcome.h"

namespace larkspan::console {
namespace {

AuditBlock ExampleAudit() {
  return {.started = "11/20/26 19:31:34 UTC",
          .ended = "11/20/26 19:31:36 UTC",
          .runtimeSeconds = "2.00",
          .user = "CN=Ada Quill/O=Example",
          .server = "Mill/Example",
          .path = "archive\\orders.nsf",
          .fullAccess = true,
          .sizeBefore = 2097152,
          .sizeAfter = std::nullopt,
          .cameToItsEnd = true};
}

Account ExampleAccount() {
  Account account;
  account.notes = {.listed = 9,
                   .exported = 6,
                   .exportedWithLoss = 3,
                   .wholeDespiteDeath = 1,
                   .lost = 1,
                   .notReached = 1,
                   .contradicted = 1,
                   .unaccounted = 1};
  account.folders = {{"", 5, 4729}, {"data", 6, 6000000000}};
  account.audit = ExampleAudit();
  account.losses = {{LossKind::kNote, 0x902, "open", "Note has been deleted"},
                    {LossKind::kRawCopy, 0x102, "raw copy", "Notes error 585"},
                    {LossKind::kPictures, 0x906, "pictures", "damaged"},
                    {LossKind::kIndexLine, 0x90A, "index", "no line"},
                    {LossKind::kAcl, std::nullopt, "acl", "Notes error 585"},
                    {LossKind::kView, 0x106, "views", "a worker died at it"}};
  account.findings = {{"unaccounted", 0x90E, "", "note 0000090E has neither"},
                      {"unknown-file", std::nullopt, "data/\xC3\xA4.txt", "belongs to no note"}};
  account.warnings = {{"worker-death", "a worker died at note 00000912"}};
  account.records = {{"acl.dxl", 307}, {"views/00000106.xml", 5000000000}};
  return account;
}

}  // namespace

Outcome RunningOutcome() {
  Outcome outcome;
  outcome.command = {"export", "--path", "archive\\orders.nsf"};
  outcome.consoleVersion = outcome.larkspanVersion = "0.1.0";
  outcome.host = "MILL";
  outcome.user = "Ada \xE6\x97\xA5";
  outcome.path = "archive\\orders.nsf";
  outcome.started = "2026-11-22T07:40:55Z";
  outcome.updated = "2026-11-22T07:41:55Z";
  outcome.progress.phase = "opening";
  return outcome;
}

Outcome EndedOutcome() {
  Outcome outcome = RunningOutcome();
  outcome.state = Outcome::State::kEnded;
  outcome.server = "Mill/Example";
  outcome.archive = true;
  outcome.views = false;
  outcome.fullAccess = true;
  outcome.idFile = "ada.id";
  outcome.notesIni = "C:\\Notes\\notes.ini";
  outcome.ended = "2026-11-22T07:50:55Z";
  outcome.exitCode = ExitCode::kIncomplete;
  outcome.reason = "Not accounted for: 2 things are not as they must be.";
  outcome.progress = {"ended", 14, 12, 9, 8, 0x90E};
  outcome.restarts = {{"2026-11-22T07:44:00Z", 0x906, "crash"},
                      {"2026-11-22T07:42:00Z", std::nullopt, "stall"}};
  outcome.stop = Stop{"2026-11-22T07:49:00Z", "user"};
  outcome.resumed = {{"2026-11-22T07:45:00Z", 0x0000090A}};
  outcome.lostViews = {{LossKind::kView, 0x106, "views", "a worker died at it"}};
  outcome.warnings = {{"disk", "less space is free than the database is large"}};
  outcome.account = ExampleAccount();
  return outcome;
}

}  // namespace larkspan::console
