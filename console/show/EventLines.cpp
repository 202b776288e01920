#include "console/show/EventLines.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace larkspan::console {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json IdOrNull(const std::optional<std::uint32_t>& id) {
  return id ? Json(NoteIdText(*id)) : Json(nullptr);
}

Json OneDecimal(const std::optional<double>& value) {
  return value ? Json(std::round(*value * 10) / 10) : Json(nullptr);
}

Json CountsJson(const NoteCounts& counts) {
  return {{"listed", counts.listed},
          {"exported", counts.exported},
          {"exportedWithLoss", counts.exportedWithLoss},
          {"wholeDespiteDeath", counts.wholeDespiteDeath},
          {"lost", counts.lost},
          {"notReached", counts.notReached},
          {"contradicted", counts.contradicted},
          {"unaccounted", counts.unaccounted}};
}

Json WorkersJson(const std::vector<WorkerView>& workers) {
  Json json = Json::array();
  for (const WorkerView& worker : workers)
    json.push_back({{"worker", worker.number}, {"note", IdOrNull(worker.note)}});
  return json;
}

// Two events that come in the same second keep their order by their sequence.
std::string Line(std::uint64_t sequence, const std::string& time, const char* kind,
                 const Json& fields) {
  Json event = {{"version", kVersion}, {"sequence", sequence}, {"time", time}, {"kind", kind}};
  event.update(fields);
  return event.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string EventLines::Start(const StartEvent& start) {
  return Line(++sequence_, clock_(), "start",
              {{"server", start.server},
               {"path", start.path},
               {"out", start.out},
               {"mode", start.mode},
               {"command", start.command}});
}

std::string EventLines::Phase(const std::string& phase) {
  return Line(++sequence_, clock_(), "phase", {{"phase", phase}});
}

std::string EventLines::Progress(const RunView& view, const Pace& pace) {
  Json fields = {{"phase", view.phase},
                 {"viewsDone", view.viewsDone},
                 {"views", OrNull(view.views)},
                 {"documentsDone", view.documentsDone},
                 {"documents", OrNull(view.documents)},
                 {"filesDone", view.filesDone},
                 {"files", OrNull(view.files)},
                 {"percent", OrNull(PercentOf(view))},
                 {"rate", OneDecimal(pace.perSecond)},
                 {"secondsLeft", OrNull(pace.secondsLeft)},
                 {"note", IdOrNull(view.note)},
                 {"restarts", view.restarts},
                 {"lost", view.lost}};
  if (!view.workers.empty()) fields["workers"] = WorkersJson(view.workers);
  return Line(++sequence_, clock_(), "progress", fields);
}

std::string EventLines::Restart(const RestartEvent& restart) {
  Json fields = {{"note", IdOrNull(restart.note)}, {"cause", restart.cause}};
  if (restart.worker) fields["worker"] = *restart.worker;
  return Line(++sequence_, clock_(), "restart", fields);
}

std::string EventLines::Lost(const LostEvent& lost) {
  const Loss& loss = lost.loss;
  Json fields = {{"id", IdOrNull(loss.id)}, {"stage", loss.stage}, {"cause", loss.cause}};
  if (lost.worker) fields["worker"] = *lost.worker;
  return Line(++sequence_, clock_(), "lost", fields);
}

std::string EventLines::Warn(const Warning& warning) {
  return Line(++sequence_, clock_(), "warning",
              {{"warning", warning.kind}, {"text", warning.text}});
}

std::string EventLines::Stop(const std::string& by) {
  return Line(++sequence_, clock_(), "stop", {{"by", by}});
}

std::string EventLines::Retry(const RetryEvent& retry) {
  return Line(++sequence_, clock_(), "retry", {{"what", retry.what}, {"reason", retry.reason}});
}

std::string EventLines::Ready(const ReadyEvent& ready) {
  return Line(++sequence_, clock_(), "ready",
              {{"exitCode", static_cast<int>(ready.exitCode)},
               {"counts", CountsJson(ready.counts)},
               {"losses", ready.losses},
               {"findings", ready.findings},
               {"warnings", ready.warnings}});
}

std::string EventLines::End(const EndEvent& end) {
  return Line(++sequence_, clock_(), "end",
              {{"exitCode", static_cast<int>(end.exitCode)},
               {"reason", end.reason},
               {"out", end.out},
               {"counts", end.counts ? CountsJson(*end.counts) : Json(nullptr)},
               {"seconds", end.seconds}});
}

}  // namespace larkspan::console
