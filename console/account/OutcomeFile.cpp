// The file is written beside its place and moved there, so that a reader finds an earlier one or
// this one, never a half. A monitor that reads the earlier one hinders the move for that moment.
#include <chrono>
#include <exception>
#include <stdexcept>
#include <utility>
#include <vector>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "console/account/AccountJson.h"
#include "console/account/Outcome.h"
#include "console/folder/SharedFile.h"

namespace larkspan::console {

namespace {

constexpr int kFormat = 1;

struct OutcomeText {
  const char* name;
  std::string Outcome::*text;
};

constexpr OutcomeText kIdentity[] = {
    {"consoleVersion", &Outcome::consoleVersion},
    {"larkspanVersion", &Outcome::larkspanVersion},
    {"host", &Outcome::host},
    {"user", &Outcome::user},
    {"server", &Outcome::server},
    {"path", &Outcome::path},
    {"idFile", &Outcome::idFile},
    {"notesIni", &Outcome::notesIni},
    {"started", &Outcome::started},
    {"updated", &Outcome::updated},
    {"ended", &Outcome::ended},
    {"reason", &Outcome::reason},
};

struct OutcomeSwitch {
  const char* name;
  bool Outcome::*value;
};

constexpr OutcomeSwitch kSwitches[] = {
    {"archive", &Outcome::archive},
    {"views", &Outcome::views},
    {"fullAccess", &Outcome::fullAccess},
};

Json ProgressToJson(const OutcomeProgress& progress) {
  Json json = {{"phase", progress.phase}};
  if (progress.views) json["views"] = *progress.views;
  json["viewsDone"] = progress.viewsDone;
  if (progress.documents) json["documents"] = *progress.documents;
  json["documentsDone"] = progress.documentsDone;
  PutId(json, "note", progress.note);
  return json;
}

OutcomeProgress ProgressFromJson(const Json& json) {
  OutcomeProgress progress;
  progress.phase = json.at("phase").get<std::string>();
  if (json.contains("views")) progress.views = json.at("views").get<std::uint64_t>();
  progress.viewsDone = json.at("viewsDone").get<std::uint64_t>();
  if (json.contains("documents")) progress.documents = json.at("documents").get<std::uint64_t>();
  progress.documentsDone = json.at("documentsDone").get<std::uint64_t>();
  progress.note = TakeId(json, "note");
  return progress;
}

Json RestartToJson(const Restart& restart) {
  Json json = {{"time", restart.time}};
  PutId(json, "note", restart.note);
  json["cause"] = restart.cause;
  return json;
}

Restart RestartFromJson(const Json& json) {
  return {json.at("time").get<std::string>(), TakeId(json, "note"),
          json.at("cause").get<std::string>()};
}

Json ResumedToJson(const Resumed& resumed) {
  Json json = {{"time", resumed.time}};
  PutId(json, "triedAgain", resumed.triedAgain);
  return json;
}

Resumed ResumedFromJson(const Json& json) {
  return {json.at("time").get<std::string>(), TakeId(json, "triedAgain")};
}

Json OutcomeToJson(const Outcome& outcome) {
  const bool isRunning = outcome.state == Outcome::State::kRunning;
  Json json = {{"format", kFormat}, {"state", isRunning ? "running" : "ended"}};
  json["command"] = outcome.command;
  for (const OutcomeText& row : kIdentity) json[row.name] = outcome.*row.text;
  for (const OutcomeSwitch& row : kSwitches) json[row.name] = outcome.*row.value;
  if (outcome.exitCode) json["exitCode"] = static_cast<int>(*outcome.exitCode);
  json["progress"] = ProgressToJson(outcome.progress);
  json["restarts"] = Json::array();
  for (const Restart& restart : outcome.restarts)
    json["restarts"].push_back(RestartToJson(restart));
  if (outcome.stop) json["stop"] = {{"time", outcome.stop->time}, {"by", outcome.stop->by}};
  json["resumed"] = Json::array();
  for (const Resumed& resumed : outcome.resumed) json["resumed"].push_back(ResumedToJson(resumed));
  json["lostViews"] = Json::array();
  for (const Loss& view : outcome.lostViews) json["lostViews"].push_back(LossToJson(view));
  json["warnings"] = Json::array();
  for (const Warning& warning : outcome.warnings)
    json["warnings"].push_back(WarningToJson(warning));
  if (outcome.account) json["account"] = AccountToJson(*outcome.account);
  return json;
}

Outcome::State StateFromWord(const std::string& word) {
  if (word == "running") return Outcome::State::kRunning;
  if (word == "ended") return Outcome::State::kEnded;
  throw std::invalid_argument("no state");
}

ExitCode ExitCodeFromNumber(int code) {
  if (code < 0 || code > static_cast<int>(ExitCode::kIncomplete))
    throw std::invalid_argument("no exit code");
  return static_cast<ExitCode>(code);
}

void TakeEnds(const Json& json, Outcome& outcome) {
  if (json.contains("exitCode"))
    outcome.exitCode = ExitCodeFromNumber(json.at("exitCode").get<int>());
  if (json.contains("stop")) {
    const Json& stop = json.at("stop");
    outcome.stop = Stop{stop.at("time").get<std::string>(), stop.at("by").get<std::string>()};
  }
  if (json.contains("account")) outcome.account = AccountFromJson(json.at("account"));
}

Outcome OutcomeFromJson(const Json& json) {
  if (json.at("format").get<int>() != kFormat) throw std::invalid_argument("another format");
  Outcome outcome;
  outcome.state = StateFromWord(json.at("state").get<std::string>());
  outcome.command = json.at("command").get<std::vector<std::string>>();
  for (const OutcomeText& row : kIdentity) outcome.*row.text = json.at(row.name).get<std::string>();
  for (const OutcomeSwitch& row : kSwitches) outcome.*row.value = json.at(row.name).get<bool>();
  outcome.progress = ProgressFromJson(json.at("progress"));
  for (const Json& restart : json.at("restarts"))
    outcome.restarts.push_back(RestartFromJson(restart));
  for (const Json& resumed : json.at("resumed"))
    outcome.resumed.push_back(ResumedFromJson(resumed));
  for (const Json& view : json.at("lostViews")) outcome.lostViews.push_back(LossFromJson(view));
  for (const Json& warning : json.at("warnings"))
    outcome.warnings.push_back(WarningFromJson(warning));
  TakeEnds(json, outcome);
  return outcome;
}

bool WriteStage(const std::wstring& stage, const std::string& text) {
  file_system::UniqueFile file = file_system::Open(stage, L"wb");
  if (!file) return false;
  const bool written = file_system::Write(file.get(), text) == text.size();
  return file_system::Close(std::move(file)) && written;
}

bool PlaceStage(const std::wstring& stage, const std::wstring& path) {
  constexpr int kAttempts = 5;
  constexpr std::chrono::milliseconds kPause{100};
  const auto move = [&] {
    return file_system::Move(stage, path, file_system::Earlier::kIsReplaced);
  };
  return RetryWithPause(kAttempts, kPause, move, [](int) {});
}

}  // namespace

bool WriteOutcome(const std::wstring& folder, const Outcome& outcome) {
  constexpr int kIndent = 1;
  const std::wstring path = output::Join(folder, kOutcomeFile);
  const std::wstring stage = output::StageOf(path);
  const std::string text = JsonText(OutcomeToJson(outcome), kIndent) + "\n";
  if (WriteStage(stage, text) && PlaceStage(stage, path)) return true;
  file_system::Delete(stage);
  return false;
}

OutcomeReading ReadOutcome(const std::wstring& folder, Outcome& outcome) {
  SharedFile file(output::Join(folder, kOutcomeFile));
  if (file.state() == FileReading::kMissing) return OutcomeReading::kMissing;
  if (file.state() != FileReading::kRead) return OutcomeReading::kUnreadable;
  try {
    const std::optional<std::string> text = file.ReadAll();
    if (!text) return OutcomeReading::kUnreadable;
    outcome = OutcomeFromJson(Json::parse(*text));
    return OutcomeReading::kRead;
  } catch (const std::exception&) {
    return OutcomeReading::kUnreadable;
  }
}

}  // namespace larkspan::console
