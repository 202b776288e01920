#include "console/batch/BatchSentences.h"

#include <array>
#include <utility>

#include "console/show/Sentences.h"
#include "console/show/StatusParts.h"
#include "console/text/Sizes.h"
#include "console/text/Times.h"

namespace larkspan::console {

namespace {

std::string DatabasesText(std::uint64_t number) {
  return CountText(number, "database", "databases");
}

std::string NotesAndTime(const BatchEntry& entry) {
  std::string text;
  if (entry.counts && entry.counts->listed > 0)
    text = ", " + GroupedText(entry.counts->exported) + " of " +
           CountText(entry.counts->listed, "note", "notes");
  if (const auto seconds = SecondsBetween(entry.since, entry.ended))
    text += " in " + DurationText(*seconds);
  return text;
}

}  // namespace

std::string OutsetOfAll(ExitCode code) {
  switch (code) {
    case ExitCode::kWhole:
    case ExitCode::kLosses:
    case ExitCode::kStopped:
      return OutsetOf(code);
    case ExitCode::kIncomplete:
      return "Not all is accounted for";
    case ExitCode::kUsage:
    case ExitCode::kCouldNotRun:
      break;
  }
  return "Not all could run";
}

std::string BatchStartSentence(const BatchStart& start, const BatchCounts& counts) {
  std::string sentence = "Exporting " + DatabasesText(counts.all) + " to " + start.root + ", " +
                         std::to_string(start.jobs) + " at once";
  if (counts.before > 0)
    sentence += "\n" + DatabasesText(counts.before) + " finished before, and passed over";
  if (start.repeated > 0)
    sentence += "\n" + CountText(start.repeated, "line names", "lines name") +
                " a database again that is listed above";
  if (counts.leftOut > 0)
    sentence += "\n" + CountText(counts.leftOut, "folder", "folders") + " of the list left out";
  return sentence;
}

std::string FinishSentence(const BatchEntry& entry) {
  const std::string name = DatabaseName(entry.database.server, entry.database.path);
  const std::string outset = OutsetOf(entry.code.value_or(ExitCode::kIncomplete));
  const std::string sentence = outset + ": " + name + NotesAndTime(entry);
  return entry.reason.empty() ? sentence : sentence + ": " + entry.reason;
}

std::string BatchStopSentence(const std::string& by) {
  if (by == "user")
    return "Stopping: each export ends at its next note. Ctrl-C again ends them at once.";
  if (by == "force") return "The exports are ended at once.";
  return StopSentence(by);
}

std::string BatchCountsText(const BatchCounts& counts) {
  const std::array<std::pair<std::uint64_t, const char*>, 6> kParts = {
      {{counts.whole, " whole"},
       {counts.withLosses, " with losses"},
       {counts.incomplete, " incomplete"},
       {counts.failed, " failed"},
       {counts.stopped, " stopped"},
       {counts.running, " at work"}}};
  std::string text =
      GroupedText(counts.Done()) + " of " + DatabasesText(counts.all - counts.leftOut) + " done";
  const char* gap = ": ";
  for (const auto& [number, words] : kParts) {
    if (number == 0) continue;
    text += gap + GroupedText(number) + words;
    gap = ", ";
  }
  return text;
}

std::string BatchEndSentence(const BatchEnd& end) {
  std::string sentence = OutsetOfAll(end.code) + ": " + BatchCountsText(end.counts) + " in " +
                         DurationText(end.seconds);
  if (end.counts.notBegun > 0)
    sentence += "\n" + DatabasesText(end.counts.notBegun) + " not begun: " + end.reason;
  if (!end.summary.empty()) sentence += "\nSummary: " + end.summary;
  return sentence;
}

}  // namespace larkspan::console
