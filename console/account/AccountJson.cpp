#include "console/account/AccountJson.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include "console/account/Outcome.h"
#include "console/folder/HexDigits.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// In the order of LossKind.
constexpr std::array<std::string_view, 6> kLossKinds = {"note",  "rawCopy", "pictures",
                                                        "index", "acl",     "view"};

LossKind LossKindFromWord(const std::string& word) {
  for (std::size_t i = 0; i < kLossKinds.size(); ++i)
    if (kLossKinds[i] == word) return static_cast<LossKind>(i);
  throw std::invalid_argument("no kind of loss");
}

const char* VerdictWord(ExitCode verdict) {
  return verdict == ExitCode::kWhole    ? "whole"
         : verdict == ExitCode::kLosses ? "losses"
                                        : "incomplete";
}

struct CountName {
  const char* name;
  std::uint64_t NoteCounts::*count;
};

constexpr std::array kCountNames = {
    CountName{"listed", &NoteCounts::listed},
    CountName{"exported", &NoteCounts::exported},
    CountName{"exportedWithLoss", &NoteCounts::exportedWithLoss},
    CountName{"wholeDespiteDeath", &NoteCounts::wholeDespiteDeath},
    CountName{"lost", &NoteCounts::lost},
    CountName{"notReached", &NoteCounts::notReached},
    CountName{"contradicted", &NoteCounts::contradicted},
    CountName{"unaccounted", &NoteCounts::unaccounted},
};

Json CountsToJson(const NoteCounts& counts) {
  Json json = Json::object();
  for (const CountName& row : kCountNames) json[row.name] = counts.*row.count;
  return json;
}

NoteCounts CountsFromJson(const Json& json) {
  NoteCounts counts;
  for (const CountName& row : kCountNames)
    counts.*row.count = json.at(row.name).get<std::uint64_t>();
  return counts;
}

struct AuditText {
  const char* name;
  std::string AuditBlock::*text;
};

constexpr std::array kAuditTexts = {
    AuditText{"started", &AuditBlock::started},
    AuditText{"ended", &AuditBlock::ended},
    AuditText{"runtimeSeconds", &AuditBlock::runtimeSeconds},
    AuditText{"user", &AuditBlock::user},
    AuditText{"server", &AuditBlock::server},
    AuditText{"path", &AuditBlock::path},
};

std::optional<std::uint64_t> TakeNumber(const Json& json, const char* name) {
  if (!json.contains(name)) return std::nullopt;
  return json.at(name).get<std::uint64_t>();
}

Json AuditToJson(const AuditBlock& audit) {
  Json json = Json::object();
  for (const AuditText& row : kAuditTexts) json[row.name] = audit.*row.text;
  json["fullAccess"] = audit.fullAccess;
  if (audit.sizeBefore) json["sizeBefore"] = *audit.sizeBefore;
  if (audit.sizeAfter) json["sizeAfter"] = *audit.sizeAfter;
  json["cameToItsEnd"] = audit.cameToItsEnd;
  return json;
}

AuditBlock AuditFromJson(const Json& json) {
  AuditBlock audit;
  for (const AuditText& row : kAuditTexts) audit.*row.text = json.at(row.name).get<std::string>();
  audit.fullAccess = json.at("fullAccess").get<bool>();
  audit.sizeBefore = TakeNumber(json, "sizeBefore");
  audit.sizeAfter = TakeNumber(json, "sizeAfter");
  audit.cameToItsEnd = json.at("cameToItsEnd").get<bool>();
  return audit;
}

Finding FindingFromJson(const Json& json) {
  return {json.at("kind").get<std::string>(), TakeId(json, "id"), json.value("file", ""),
          json.at("text").get<std::string>()};
}

Json FolderToJson(const FolderCount& folder) {
  return {{"name", folder.name}, {"files", folder.files}, {"bytes", folder.bytes}};
}

FolderCount FolderFromJson(const Json& json) {
  return {json.at("name").get<std::string>(), json.at("files").get<std::uint64_t>(),
          json.at("bytes").get<std::uint64_t>()};
}

Json RecordToJson(const FileRecord& record) {
  return {{"name", record.name}, {"size", record.size}};
}

FileRecord RecordFromJson(const Json& json) {
  return {json.at("name").get<std::string>(), json.at("size").get<std::uint64_t>()};
}

template <typename Value, typename Convert>
Json ListToJson(const std::vector<Value>& values, Convert convert) {
  Json list = Json::array();
  for (const Value& value : values) list.push_back(convert(value));
  return list;
}

template <typename Value>
void TakeList(const Json& json, const char* name, Value (*convert)(const Json&),
              std::vector<Value>& values) {
  const Json& list = json.at(name);
  if (!list.is_array()) throw std::invalid_argument("no list");
  for (const Json& value : list) values.push_back(convert(value));
}

}  // namespace

Json FindingToJson(const Finding& finding) {
  Json json = {{"kind", finding.kind}};
  PutId(json, "id", finding.id);
  if (!finding.file.empty()) json["file"] = finding.file;
  json["text"] = finding.text;
  return json;
}

void PutId(Json& json, const char* name, const std::optional<std::uint32_t>& id) {
  if (id) json[name] = NoteIdText(*id);
}

std::optional<std::uint32_t> TakeId(const Json& json, const char* name) {
  if (!json.contains(name)) return std::nullopt;
  const std::string text = json.at(name).get<std::string>();
  const std::optional<std::uint32_t> id = ParseNoteId<char>(text);
  if (!id) throw std::invalid_argument("no note ID");
  return id;
}

Json LossToJson(const Loss& loss) {
  Json json = {{"kind", kLossKinds[static_cast<std::size_t>(loss.kind)]}};
  PutId(json, "id", loss.id);
  json["stage"] = loss.stage;
  json["cause"] = loss.cause;
  return json;
}

Loss LossFromJson(const Json& json) {
  return {LossKindFromWord(json.at("kind").get<std::string>()), TakeId(json, "id"),
          json.at("stage").get<std::string>(), json.at("cause").get<std::string>()};
}

Json WarningToJson(const Warning& warning) {
  return {{"kind", warning.kind}, {"text", warning.text}};
}

Warning WarningFromJson(const Json& json) {
  return {json.at("kind").get<std::string>(), json.at("text").get<std::string>()};
}

Json AccountToJson(const Account& account) {
  const ExitCode verdict = account.Verdict();
  return {{"verdict", VerdictWord(verdict)},
          {"exitCode", static_cast<int>(verdict)},
          {"archive", account.archive},
          {"notes", CountsToJson(account.notes)},
          {"folders", ListToJson(account.folders, FolderToJson)},
          {"audit", AuditToJson(account.audit)},
          {"losses", ListToJson(account.losses, LossToJson)},
          {"findings", ListToJson(account.findings, FindingToJson)},
          {"warnings", ListToJson(account.warnings, WarningToJson)},
          {"records", ListToJson(account.records, RecordToJson)}};
}

Account AccountFromJson(const Json& json) {
  Account account;
  account.archive = json.at("archive").get<bool>();
  account.notes = CountsFromJson(json.at("notes"));
  TakeList(json, "folders", FolderFromJson, account.folders);
  account.audit = AuditFromJson(json.at("audit"));
  TakeList(json, "losses", LossFromJson, account.losses);
  TakeList(json, "findings", FindingFromJson, account.findings);
  TakeList(json, "warnings", WarningFromJson, account.warnings);
  TakeList(json, "records", RecordFromJson, account.records);
  return account;
}

std::string JsonText(const Json& json, int indent) {
  return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

std::string AccountJson(const Account& account) { return JsonText(AccountToJson(account), -1); }

}  // namespace larkspan::console
