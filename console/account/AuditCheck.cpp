// The closing block is counted again, line by line, from what the folder holds now. A system's own
// files may have come or gone since, so where they count, a number has some room.
#include "console/account/Evidence.h"

namespace larkspan::console {

namespace {

constexpr char kFile[] = "audit.txt";

void AddAuditFinding(Verdicts& verdicts, const char* kind, const std::string& text) {
  verdicts.AddFinding(kind, std::nullopt, kFile, text);
}

CountedFiles Sum(const CountedFiles& a, const CountedFiles& b) {
  return {a.least + b.least, a.ofTheSystem + b.ofTheSystem};
}

void Compare(const AuditFacts& audit, AuditRow row, const CountedFiles& counted,
             Verdicts& verdicts) {
  const std::optional<std::uint64_t> told = audit.Number(row);
  if (!told) return;  // That it is missing is a finding of its own.
  if (*told >= counted.least && *told <= counted.least + counted.ofTheSystem) return;
  AddAuditFinding(verdicts, "audit-differs",
                  "audit.txt says '" + AuditLabel(row) + "': " + std::to_string(*told) +
                      ", but it is " + std::to_string(counted.least));
}

void Recount(const Evidence& evidence, Verdicts& verdicts) {
  const AuditFacts& audit = evidence.audit;
  const ExportFiles& files = evidence.files;
  const auto compare = [&](AuditRow row, const CountedFiles& counted) {
    Compare(audit, row, counted, verdicts);
  };
  const bool isListWhole =
      evidence.list.reading == FileReading::kRead && evidence.list.faultyLines == 0;
  if (isListWhole) compare(AuditRow::kListed, {evidence.list.ids.size(), 0});
  compare(AuditRow::kData, files.data);
  compare(AuditRow::kDesign, files.design);
  compare(AuditRow::kProfile, files.profile);
  const CountedFiles exported = Sum(Sum(files.data, files.design), files.profile);
  compare(AuditRow::kExported, exported);
  const CountedFiles failed = {evidence.log.majorLines, 0};
  compare(AuditRow::kFailed, failed);
  compare(AuditRow::kProcessed, Sum(exported, failed));
  compare(AuditRow::kWarned, {evidence.log.minorLines, 0});
}

void JudgeClosingSentence(const Evidence& evidence, Verdicts& verdicts) {
  const bool haveLosses = evidence.log.majorLines + evidence.log.minorLines != 0;
  if (evidence.audit.tellsOfLosses == haveLosses) return;
  AddAuditFinding(verdicts, "audit-differs",
                  haveLosses ? "audit.txt does not end with the sentence that points to log.txt"
                             : "audit.txt points to log.txt, which tells of no note");
}

void JudgeEnd(const Evidence& evidence, Verdicts& verdicts) {
  const std::string& error = evidence.log.lastError;
  if (!evidence.audit.block.cameToItsEnd) {
    verdicts.CiteError(error);
    AddAuditFinding(verdicts, "incomplete",
                    "the run did not come to its end: audit.txt has no size of the database after "
                    "the archive" +
                        (error.empty() ? "" : "; the log's last ERROR is: " + error));
  }
  if (!evidence.audit.isClosed)
    AddAuditFinding(verdicts, "incomplete", "the last run in audit.txt has no closing block");
}

}  // namespace

void JudgeAudit(const Evidence& evidence, Verdicts& verdicts) {
  const AuditFacts& audit = evidence.audit;
  if (audit.reading == FileReading::kMissing)
    return AddAuditFinding(verdicts, "missing",
                           "audit.txt is missing: nothing tells whether the run came to its end");
  if (audit.reading == FileReading::kUnreadable)
    return AddAuditFinding(verdicts, "unreadable", "audit.txt cannot be read");
  if (!audit.isBegun)
    AddAuditFinding(verdicts, "audit", "audit.txt lacks the line with which a run begins");
  for (const std::string& fault : audit.faults) AddAuditFinding(verdicts, "audit", fault);
  JudgeEnd(evidence, verdicts);
  if (!audit.isClosed) return;
  Recount(evidence, verdicts);
  JudgeClosingSentence(evidence, verdicts);
}

}  // namespace larkspan::console
