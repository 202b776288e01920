#include "console/batch/EventReader.h"

#include <charconv>
#include <nlohmann/json.hpp>

namespace larkspan::console {

namespace {

using Json = nlohmann::json;

template <typename Value>
std::optional<Value> Optional(const Json& event, const char* name) {
  const Json& value = event.at(name);
  if (value.is_null()) return std::nullopt;
  return value.get<Value>();
}

std::optional<std::uint32_t> NoteOf(const Json& event) {
  const std::string text = Optional<std::string>(event, "note").value_or("");
  std::uint32_t note = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), note, 16);
  return error == std::errc() && !text.empty() ? std::optional(note) : std::nullopt;
}

void TakeProgress(const Json& event, RunView& view, Pace& pace) {
  view.phase = event.at("phase").get<std::string>();
  view.views = Optional<std::uint64_t>(event, "views");
  view.viewsDone = event.at("viewsDone").get<std::uint64_t>();
  view.documents = Optional<std::uint64_t>(event, "documents");
  view.documentsDone = event.at("documentsDone").get<std::uint64_t>();
  view.files = Optional<std::uint64_t>(event, "files");
  view.filesDone = event.at("filesDone").get<std::uint64_t>();
  view.note = NoteOf(event);
  view.restarts = event.at("restarts").get<std::uint64_t>();
  view.lost = event.at("lost").get<std::uint64_t>();
  pace.perSecond = Optional<double>(event, "rate");
  pace.secondsLeft = Optional<std::uint64_t>(event, "secondsLeft");
}

}  // namespace

EventReader::EventReader(const std::string& server, const std::string& path) {
  view_.server = server;
  view_.path = path;
}

bool EventReader::Take(const std::string& line) {
  const Json event = Json::parse(line, nullptr, false);
  try {
    const std::string kind = event.at("kind").get<std::string>();
    if (kind == "start") out_ = event.at("out").get<std::string>();
    if (kind == "phase") view_.phase = event.at("phase").get<std::string>();
    if (kind == "progress") TakeProgress(event, view_, pace_);
    if (kind == "stop") view_.stopRequested = true;
    if (kind == "retry") view_.withoutViews = true;
    if (kind == "end") {
      out_ = event.at("out").get<std::string>();
      reason_ = event.at("reason").get<std::string>();
    }
    return true;
  } catch (const Json::exception&) {
    if (!line.empty()) lastMessage_ = line;
    return false;
  }
}

}  // namespace larkspan::console
