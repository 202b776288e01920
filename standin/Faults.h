// Misbehaviour as data: a plan of faults, each of which names an entry point, the calls that it
// strikes, and what happens then. The plan counts the calls that meet the conditions of each fault.
// One thread calls.
#pragma once

#include <cstdint>
#include <list>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin {

enum class FaultAction {
  kReturnStatus,
  kOnlyWait,
  kAccessViolation,
  kCrashThread,
  kStackOverflow,
  kExit,
  kAbort,
  kHang,
  kThrow,
  kException,
  kEndThread,
};

// What a call is about, as far as the fault conditions go. Texts are in the Notes character set.
struct CallSubject {
  notes_api::NOTEID note = 0;
  std::uint32_t exporter = 0;
  std::string_view item;
  std::string_view path;
};

struct Fault {
  std::string entry;
  std::optional<notes_api::NOTEID> note;
  std::optional<std::uint32_t> exporter;
  std::optional<std::string> item;
  std::optional<std::string> path;
  std::uint64_t firstCall = 1;
  std::uint64_t lastCall = UINT64_MAX;
  std::optional<std::uint32_t> pieces;  // strikes only after so many chunks or matches were given

  FaultAction action = FaultAction::kOnlyWait;
  notes_api::STATUS status = 0;
  std::uint32_t waitMilliseconds = 0;
  std::optional<std::uint32_t> code;

  std::uint64_t callsMet = 0;

  bool Meets(std::string_view calledEntry, const CallSubject& subject) const;
};

class FaultPlan {
 public:
  // A strict failure when the array is not a plan; sourceName then stands in the message.
  void Add(const nlohmann::json& faults, const std::string& sourceName);

  void Clear() { faults_.clear(); }

  // Counts the call and gives the faults that strike it, in the order of the plan. The pointers
  // stay good until Clear.
  std::vector<const Fault*> Strike(std::string_view entry, const CallSubject& subject);

 private:
  std::list<Fault> faults_;
};

// Does what the fault says; returns the status the call is to end with, or zero to go on.
notes_api::STATUS Act(const Fault& fault);

}  // namespace larkspan::standin
