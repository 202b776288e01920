#include "console/show/StatusParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "console/show/TextWidth.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// What this phase goes through, one by one.
struct Count {
  std::uint64_t done = 0;
  std::optional<std::uint64_t> all;
};

std::optional<Count> CountOf(const RunView& view) {
  if (view.phase == "documents") return Count{view.documentsDone, view.documents};
  if (view.phase == "views") return Count{view.viewsDone, view.views};
  if (view.phase == "joining") return Count{view.partsDone, view.parts};
  if (view.phase == "checking") return Count{view.filesDone, view.files};
  return std::nullopt;
}

std::string PhaseText(const RunView& view) {
  const std::optional<Count> count = CountOf(view);
  if (!count || (!count->all && count->done == 0)) return view.phase;
  std::string text = view.phase + " " + GroupedText(count->done);
  if (count->all) text += "/" + GroupedText(*count->all);
  return text;
}

std::string WithoutLeadingZeros(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of('0'), text.size() - 1));
}

StatusPart WorkersPart(const std::vector<WorkerView>& workers) {
  StatusPart part{Importance::kWorkers, "at", false, "at"};
  for (const WorkerView& worker : workers) {
    const std::string note = worker.note ? NoteIdText(*worker.note) : "-";
    part.text += " " + note;
    part.shorter += " " + WithoutLeadingZeros(note);
  }
  return part;
}

// The note of each worker, where there are several.
std::optional<StatusPart> PlacePart(const RunView& view) {
  if (!view.workers.empty() && !view.silence) return WorkersPart(view.workers);
  const std::optional<std::uint32_t> note = view.silence ? view.silence->note : view.note;
  if (!note) return std::nullopt;
  return StatusPart{Importance::kNote, "at " + NoteIdText(*note)};
}

std::string RateText(double perSecond) {
  std::array<char, 32> text;
  if (perSecond >= 9.95) return GroupedText(std::llround(perSecond)) + "/s";
  // Slower ones are easier to grasp by the minute.
  if (perSecond >= 0.95)
    std::snprintf(text.data(), text.size(), "%.1f/s", perSecond);
  else
    std::snprintf(text.data(), text.size(), "%.1f/min", perSecond * 60);
  return text.data();
}

}  // namespace

Pace PaceOf(const Rate& rate, const RunView& view) {
  if (view.phase != "documents") return {};
  Pace pace = {rate.PerSecond(), std::nullopt};
  if (view.documents && *view.documents > view.documentsDone)
    pace.secondsLeft = rate.SecondsFor(*view.documents - view.documentsDone);
  return pace;
}

std::optional<int> PercentOf(const RunView& view) {
  const std::optional<Count> count = CountOf(view);
  if (!count || !count->all || *count->all == 0) return std::nullopt;
  if (count->done >= *count->all) return 100;
  const double share = static_cast<double>(count->done) / static_cast<double>(*count->all);
  return std::min(99, static_cast<int>(100 * share));
}

std::vector<StatusPart> StatusParts(const RunView& view, const Pace& pace) {
  std::vector<StatusPart> parts = {{Importance::kPhase, PhaseText(view)}};
  const auto add = [&parts](Importance importance, const std::string& text, bool isBad = false) {
    parts.push_back({importance, text, isBad});
  };
  if (const std::optional<int> percent = PercentOf(view))
    add(Importance::kPercent, std::to_string(*percent) + "%");
  // A rate or an estimate of what stands still would be a lie.
  if (pace.perSecond && !view.silence) add(Importance::kRate, RateText(*pace.perSecond));
  if (pace.secondsLeft && !view.silence)
    add(Importance::kTimeLeft, DurationText(*pace.secondsLeft) + " left");
  if (view.restarts > 0)
    add(Importance::kRestarts, CountText(view.restarts, "restart", "restarts"));
  if (view.lost > 0) add(Importance::kLost, GroupedText(view.lost) + " lost", true);
  if (view.withoutViews) add(Importance::kRestarts, "without views", true);
  if (view.stopRequested) add(Importance::kStop, "stopping");
  if (view.silence) add(Importance::kSilence, "no progress since " + view.silence->since, true);
  if (const std::optional<StatusPart> place = PlacePart(view)) parts.push_back(*place);
  const std::string name = DatabaseName(view.server, view.path);
  if (!name.empty()) add(Importance::kName, name);
  return parts;
}

std::string DatabaseName(const std::string& server, const std::string& path) {
  const bool isHere = server.empty() || server == "<Local>";
  return SafeForTerminal(isHere ? path : server + "!!" + path);
}

}  // namespace larkspan::console
