#include "standin/Faults.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "standin/CharacterSet.h"
#include "standin/EntryNames.h"
#include "standin/JsonValues.h"
#include "standin/Platform.h"
#include "standin/Strict.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

constexpr std::uint32_t kDefaultExitCode = 1;
constexpr std::uint32_t kDefaultExceptionCode = 0xE0000001;

struct NamedAction {
  std::string_view name;
  FaultAction action;
};

constexpr NamedAction kActions[] = {
    {"accessViolation", FaultAction::kAccessViolation},
    {"crashThread", FaultAction::kCrashThread},
    {"stackOverflow", FaultAction::kStackOverflow},
    {"exit", FaultAction::kExit},
    {"abort", FaultAction::kAbort},
    {"hang", FaultAction::kHang},
    {"throw", FaultAction::kThrow},
    {"exception", FaultAction::kException},
    {"endThread", FaultAction::kEndThread},
};

// The entry points that give their result to the caller piece by piece, and what a piece is.
struct PieceByPiece {
  std::string_view entry;
  std::string_view pieces;
};

constexpr PieceByPiece kPieceByPiece[] = {
    {"DXLExportNote", "chunks"},
    {"DXLExportACL", "chunks"},
    {"NSFSearch", "matches"},
    {"NSFSearchExtended3", "matches"},
};

FaultAction ActionNamed(const std::string& name) {
  for (const NamedAction& known : kActions) {
    if (known.name == name) return known.action;
  }
  throw std::runtime_error("unknown action \"" + name + "\"");
}

std::optional<std::uint32_t> ReadPieces(const json& from) {
  for (const PieceByPiece& known : kPieceByPiece) {
    if (from.at("entry") == known.entry && from.contains(known.pieces)) {
      return from.at(std::string(known.pieces)).get<std::uint32_t>();
    }
  }
  if (from.contains("chunks") || from.contains("matches")) {
    throw std::runtime_error("the entry point gives no such pieces");
  }
  return std::nullopt;
}

void ReadConditions(const json& from, Fault* fault) {
  if (from.contains("note")) fault->note = HexadecimalValue(from.at("note"));
  if (from.contains("exporter")) fault->exporter = from.at("exporter").get<std::uint32_t>();
  if (from.contains("item")) fault->item = NotesTextValue(from.at("item"));
  if (from.contains("path")) fault->path = NotesTextValue(from.at("path"));
  fault->pieces = ReadPieces(from);
  if (from.contains("call")) {
    fault->firstCall = fault->lastCall = from.at("call").get<std::uint64_t>();
  } else if (from.contains("from")) {
    fault->firstCall = from.at("from").get<std::uint64_t>();
  }
}

void ReadConsequences(const json& from, Fault* fault) {
  if (from.contains("status")) {
    fault->action = FaultAction::kReturnStatus;
    fault->status = static_cast<notes_api::STATUS>(NumberValue(from.at("status")));
  } else if (from.contains("action")) {
    fault->action = ActionNamed(from.at("action").get<std::string>());
  } else if (!from.contains("wait")) {
    throw std::runtime_error("a fault needs a status, an action or a wait");
  }
  fault->waitMilliseconds = from.value("wait", 0U);
  if (from.contains("code")) fault->code = NumberValue(from.at("code"));
}

Fault ReadFault(const json& from) {
  RequireKeys(from, {"entry", "note", "exporter", "item", "path", "chunks", "matches", "call",
                     "from", "status", "action", "wait", "code", "comment"});
  Fault fault;
  fault.entry = from.at("entry").get<std::string>();
  if (!IsEntryName(fault.entry)) throw std::runtime_error("no entry point " + fault.entry);
  ReadConditions(from, &fault);
  ReadConsequences(from, &fault);
  return fault;
}

}  // namespace

bool Fault::Meets(std::string_view calledEntry, const CallSubject& subject) const {
  return entry == calledEntry && (!note || *note == subject.note) &&
         (!exporter || *exporter == subject.exporter) && (!item || *item == subject.item) &&
         (!path || *path == subject.path);
}

void FaultPlan::Add(const json& faults, const std::string& sourceName) {
  try {
    for (const json& fault : faults) faults_.push_back(ReadFault(fault));
  } catch (const std::exception& error) {
    StrictFailure(sourceName + ": bad fault: " + error.what());
  }
}

std::vector<const Fault*> FaultPlan::Strike(std::string_view entry, const CallSubject& subject) {
  std::vector<const Fault*> striking;
  for (Fault& fault : faults_) {
    if (!fault.Meets(entry, subject)) continue;
    ++fault.callsMet;
    if (fault.callsMet >= fault.firstCall && fault.callsMet <= fault.lastCall) {
      striking.push_back(&fault);
    }
  }
  return striking;
}

notes_api::STATUS Act(const Fault& fault) {
  if (fault.waitMilliseconds != 0) PauseMilliseconds(fault.waitMilliseconds);
  switch (fault.action) {
    case FaultAction::kReturnStatus:
      return fault.status;
    case FaultAction::kOnlyWait:
      return 0;
    case FaultAction::kAccessViolation:
      CauseAccessViolation();
    case FaultAction::kCrashThread:
      StartThreadThatCrashes();
      return 0;
    case FaultAction::kStackOverflow:
      CauseStackOverflow();
    case FaultAction::kExit:
      ExitProcessNormally(static_cast<int>(fault.code.value_or(kDefaultExitCode)));
    case FaultAction::kAbort:
      AbortProcess();
    case FaultAction::kHang:
      HangForever();
    case FaultAction::kThrow:
      throw std::runtime_error("thrown by " + fault.entry);
    case FaultAction::kException:
      RaiseSystemException(fault.code.value_or(kDefaultExceptionCode));
    case FaultAction::kEndThread:
      EndThread();
  }
  return 0;
}

}  // namespace larkspan::standin
