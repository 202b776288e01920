#include "console/batch/EventBatchDisplay.h"

#include <nlohmann/json.hpp>

#include "console/show/Sentences.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;

Json NameOf(const BatchEntry& entry) {
  return {{"server", entry.database.server}, {"path", entry.database.path}};
}

Json CountsOf(const BatchCounts& counts) {
  return {{"databases", counts.all},     {"whole", counts.whole},
          {"losses", counts.withLosses}, {"incomplete", counts.incomplete},
          {"failed", counts.failed},     {"stopped", counts.stopped},
          {"running", counts.running},   {"waiting", counts.notBegun},
          {"folders", counts.leftOut},   {"finishedBefore", counts.before}};
}

}  // namespace

void EventBatchDisplay::Start(const BatchStart& start, const BatchCounts& counts) {
  Write("batchStart", {{"list", start.list},
                       {"root", start.root},
                       {"jobs", start.jobs},
                       {"repeated", start.repeated},
                       {"counts", CountsOf(counts)}});
}

// What moves is in the events of the exports.
void EventBatchDisplay::Update(const BatchCounts&, const std::vector<RunningView>&, std::uint64_t) {
}

void EventBatchDisplay::Begin(const BatchEntry& entry) {
  Json fields = NameOf(entry);
  fields["out"] = WideToUtf8(entry.folder);
  fields["resumed"] = entry.wasResumed;
  Write("exportStart", fields);
}

void EventBatchDisplay::Line(const BatchEntry& entry, const std::string& line, bool isEvent) {
  Json fields = NameOf(entry);
  if (isEvent) {
    fields["event"] = Json::parse(line, nullptr, false);
  } else {
    fields["text"] = line;
  }
  Write(isEvent ? "exportEvent" : "exportText", fields);
}

void EventBatchDisplay::Finish(const BatchEntry& entry) {
  Json fields = NameOf(entry);
  fields["out"] = WideToUtf8(entry.out);
  fields["state"] = StateWord(entry);
  fields["exitCode"] = static_cast<int>(entry.code.value_or(ExitCode::kIncomplete));
  fields["reason"] = entry.reason;
  fields["losses"] = entry.losses;
  fields["findings"] = entry.findings;
  fields["warnings"] = entry.warnings;
  Write("exportEnd", fields);
}

void EventBatchDisplay::Stop(const std::string& by) { Write("stop", {{"by", by}}); }

void EventBatchDisplay::Error(const std::string& text) { errors_.Write(ErrorText(text)); }

void EventBatchDisplay::End(const BatchEnd& end) {
  Write("batchEnd", {{"exitCode", static_cast<int>(end.code)},
                     {"reason", end.reason},
                     {"counts", CountsOf(end.counts)},
                     {"summary", end.summary},
                     {"seconds", end.seconds}});
}

// What is no UTF-8 in a text becomes U+FFFD.
void EventBatchDisplay::Write(const char* kind, const Json& fields) {
  Json event = {
      {"version", kVersion}, {"sequence", ++sequence_}, {"time", UtcNow()}, {"kind", kind}};
  event.update(fields);
  if (!isBroken_)
    isBroken_ = !output_.Write(event.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace larkspan::console
