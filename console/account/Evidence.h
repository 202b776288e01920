// All that the account is made from, and what each part of it adds.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "console/account/Account.h"
#include "console/account/ExportFiles.h"
#include "console/account/Outcome.h"
#include "console/folder/AuditFile.h"
#include "console/folder/NoteList.h"
#include "console/folder/RunLogFile.h"
#include "console/folder/UnidIndex.h"

namespace larkspan::console {

struct Evidence {
  NoteList list;
  UnidIndex index;
  RunLogFacts log;

  // What the logs of parts that are not joined tell as lost, and has no file there; and the notes
  // of which files are still to be moved, though the run's log has their lines already.
  std::map<std::uint32_t, NoteLine> lostInParts;
  std::set<std::uint32_t> halfJoined;

  AuditFacts audit;
  OutcomeReading outcomeReading = OutcomeReading::kMissing;
  Outcome outcome;
  ExportFiles files;

  // What the export recorded of its files when it had ended; null when nothing did.
  const Account* Recorded() const { return outcome.account ? &*outcome.account : nullptr; }
};

// The account while it is made.
class Verdicts {
 public:
  explicit Verdicts(Account& account) : account_(account) {}

  bool IsArchive() const { return account_.archive; }
  void AddLoss(LossKind kind, std::optional<std::uint32_t> id, const char* stage,
               const std::string& cause);
  void AddFinding(const char* kind, std::optional<std::uint32_t> id, const std::string& file,
                  const std::string& text);
  void AddWarning(const char* kind, const std::string& text);

  // Says that findings name this ERROR already.
  void CiteError(const std::string& error) { cited_.insert(error); }
  bool IsCited(const std::string& error) const { return cited_.contains(error); }

  NoteCounts& counts() { return account_.notes; }

 private:
  Account& account_;
  std::set<std::string> cited_;
};

// Each listed note: is it there, and what says so?
void JudgeNotes(const Evidence& evidence, Verdicts& verdicts);

// Each file: is it well-formed, and is it the note that its name says?
void JudgeFiles(const Evidence& evidence, Verdicts& verdicts);

// Files that must be there, and those that the export has recorded.
void JudgePresence(const Evidence& evidence, Verdicts& verdicts);

// idtable.txt and unidindex.txt.
void JudgeLists(const Evidence& evidence, Verdicts& verdicts);

// The last block of audit.txt, counted again.
void JudgeAudit(const Evidence& evidence, Verdicts& verdicts);

// What log.txt says beside the notes, and what outcome.json says of the run. Called last: an ERROR
// that no finding names becomes a warning.
void JudgeRun(const Evidence& evidence, Verdicts& verdicts);

}  // namespace larkspan::console
