#include "console/show/Sentences.h"

#include <array>
#include <utility>

#include "console/show/StatusParts.h"
#include "console/show/TextWidth.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::string NotesText(std::uint64_t number) { return CountText(number, "note", "notes"); }

}  // namespace

std::string OutsetOf(ExitCode code) {
  switch (code) {
    case ExitCode::kWhole:
      return "Whole";
    case ExitCode::kUsage:
    case ExitCode::kCouldNotRun:
      return "Could not run";
    case ExitCode::kLosses:
      return "Done with losses";
    case ExitCode::kStopped:
      return "Stopped";
    case ExitCode::kIncomplete:
      break;
  }
  return "Incomplete";
}
std::string StartSentence(const StartEvent& start) {
  return "Exporting " + DatabaseName(start.server, start.path) + " to " + start.out;
}

std::string RestartSentence(const RestartEvent& restart) {
  const std::string where = restart.note ? " at note " + NoteIdText(*restart.note) : "";
  const std::string worker =
      restart.worker ? "Worker " + std::to_string(*restart.worker) : std::string("The worker");
  return worker + " ended by a " + restart.cause + where + "; the export goes on.";
}

std::string LossSentence(const Loss& loss) {
  const std::string what = loss.id ? NoteIdText(*loss.id) + " (" + loss.stage + ")" : loss.stage;
  return "Lost: " + what + ": " + loss.cause;
}

std::string StopSentence(const std::string& by) {
  using Sentence = std::pair<const char*, const char*>;
  constexpr std::array<Sentence, 7> kSentences = {
      {{"user", "Stopping. Ctrl-C again ends the export at once."},
       {"input", "Standard input has ended: stopping."},
       {"output", "Nobody reads the output any more: stopping."},
       {"disk", "The disk is nearly full: stopping."},
       {"stall", "No progress for too long: the export is ended."},
       {"give-up", "Too many notes in a row are lost for one cause: the export is ended."},
       {"force", "The export is ended at once."}}};
  for (const auto& [word, sentence] : kSentences)
    if (by == word) return sentence;
  return "Stopping: " + by + ".";
}

std::string RetrySentence(const RetryEvent& retry) {
  return "Taking the export up again " + retry.what + ": " + retry.reason;
}

std::string ReadySentence(const ReadyEvent& ready) {
  return "Ready to be placed, with " + NotesText(ready.counts.exported) + " and " +
         CountText(ready.losses, "loss", "losses") + "; waiting for 'place' or 'leave'.";
}

std::string EndSentence(const EndEvent& end) {
  std::string sentence = OutsetOf(end.exitCode);
  if (!end.reason.empty()) sentence += ": " + end.reason;
  if (end.counts) {
    sentence += "\n" + GroupedText(end.counts->exported) + " of " + NotesText(end.counts->listed) +
                " exported in " + DurationText(end.seconds);
    if (end.counts->lost > 0) sentence += ", " + GroupedText(end.counts->lost) + " lost";
    sentence += ": " + end.out;
  }
  return sentence;
}

std::string ErrorText(std::string_view text) {
  return "larkspan-console: " + SafeForTerminal(text) + "\n";
}

}  // namespace larkspan::console
