#include "console/account/Evidence.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr char kFile[] = "log.txt";

void JudgeNoteLines(const Evidence& evidence, Verdicts& verdicts) {
  for (const NoteLine& line : evidence.log.notes)
    if (!evidence.list.Contains(line.id))
      verdicts.AddFinding(
          "unknown-note", line.id, kFile,
          "log.txt tells of note " + NoteIdText(line.id) + ", which idtable.txt does not list");
  for (const std::string& message : evidence.log.unnamed)
    verdicts.AddFinding("unknown-note", std::nullopt, kFile,
                        "log.txt has a line that names no note: " + message);
  const std::uint64_t more = evidence.log.unnamedLines - evidence.log.unnamed.size();
  if (more != 0)
    verdicts.AddFinding("unknown-note", std::nullopt, kFile,
                        "log.txt has " + std::to_string(more) + " more lines that name no note");
}

std::string WithTimes(const RepeatedText& repeated) {
  if (repeated.times == 1) return repeated.text;
  return repeated.text + " (" + std::to_string(repeated.times) + " times)";
}

// The audit report of a plain export counts no files, so its run finds that too few are there.
bool IsMismatchOfPlainExport(const Evidence& evidence, const Verdicts& verdicts,
                             const std::string& message) {
  return !verdicts.IsArchive() && message == "Document count mismatch: expected " +
                                                 std::to_string(evidence.list.ids.size()) +
                                                 " but only found " +
                                                 std::to_string(evidence.log.majorLines);
}

void AddLogWarnings(const Evidence& evidence, Verdicts& verdicts) {
  for (const RepeatedText& warning : evidence.log.warnings)
    if (!IsMismatchOfPlainExport(evidence, verdicts, warning.text))
      verdicts.AddWarning("log", WithTimes(warning));
  if (evidence.log.otherWarnings != 0)
    verdicts.AddWarning("log", std::to_string(evidence.log.otherWarnings) +
                                   " more WARNING lines, of more than a thousand different texts");
  if (evidence.log.formlessLines != 0)
    verdicts.AddWarning("log", std::to_string(evidence.log.formlessLines) +
                                   " lines of log.txt are not as the program writes them");
  for (const RepeatedText& error : evidence.log.errors)
    if (!verdicts.IsCited(error.text)) verdicts.AddWarning("error-line", WithTimes(error));
}

void AddStopWarning(const Stop& stop, Verdicts& verdicts) {
  verdicts.AddWarning("stopped", "the export was stopped by " + stop.by +
                                     (stop.time.empty() ? "" : " at " + stop.time));
}

void JudgeOutcome(const Evidence& evidence, Verdicts& verdicts) {
  if (evidence.outcomeReading == OutcomeReading::kUnreadable)
    verdicts.AddFinding("outcome", std::nullopt, "outcome.json",
                        "outcome.json cannot be read, or is not as an export writes it");
  if (evidence.outcomeReading != OutcomeReading::kRead) return;
  for (const Loss& view : evidence.outcome.lostViews)
    verdicts.AddLoss(LossKind::kView, view.id, view.stage.c_str(), view.cause);
  if (evidence.outcome.state == Outcome::State::kRunning)
    verdicts.AddWarning("running",
                        "outcome.json says that the export is still running, or it was cut off");
  if (evidence.outcome.stop) AddStopWarning(*evidence.outcome.stop, verdicts);
}

}  // namespace

void JudgeRun(const Evidence& evidence, Verdicts& verdicts) {
  if (evidence.log.reading == FileReading::kUnreadable)
    verdicts.AddFinding("unreadable", std::nullopt, kFile, "log.txt cannot be read");
  JudgeNoteLines(evidence, verdicts);
  JudgeOutcome(evidence, verdicts);
  AddLogWarnings(evidence, verdicts);
}

}  // namespace larkspan::console
