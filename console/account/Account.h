// What became of an export: every listed note accounted for by its ID, from what its folder holds.
// Plain values. All texts are UTF-8; file names are relative to the folder and have slashes
// ("data/0000090A.dxl").
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/ExitCode.h"

namespace larkspan::console {

// Each note of idtable.txt has exactly one.
enum class Fate {
  kExported,           // Its file is there, and nothing says that anything of it is missing.
  kExportedWithLoss,   // Its file is there without its raw copy, its pictures or its index line.
  kWholeDespiteDeath,  // A worker died at it after its file was placed.
  kLost,               // There is no file, and a line of the log says so.
  kNotReached,         // There is neither; the run ended before it with an ERROR that tells why.
  kContradicted,       // There is a file, and a line that says it was not exported.
  kUnaccounted,        // There is neither a file nor a line.
};

enum class LossKind { kNote, kRawCopy, kPictures, kIndexLine, kAcl, kView };

// One thing that the export does not hold and says so.
struct Loss {
  LossKind kind = LossKind::kNote;
  std::optional<std::uint32_t> id;  // Of the note or view; none for the ACL, and for views that
                                    // nothing names.
  std::string stage;                // "open", "decrypt", "export", "raw copy", "crash", "stall",
                                    // "pictures", "index", "acl", "views", "run".
  std::string cause;                // The library's words, or ours; the message without its ID.
};

// One thing that is not as it must be: the folder is not accounted for.
struct Finding {
  std::string kind;  // A word of docs/console.md, such as "unaccounted" or "not-well-formed".
  std::optional<std::uint32_t> id;
  std::string file;  // Empty when it is about no file.
  std::string text;  // One sentence.
};

struct Warning {
  std::string kind;
  std::string text;
};

struct FolderCount {
  std::string name;  // "data", "design", "design2", "profile", "views"; "" is the folder itself.
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
};

// A file whose being there only the export's own record can tell.
struct FileRecord {
  std::string name;
  std::uint64_t size = 0;
};

// What the last block of audit.txt says. Texts are as they stand there; no value: no such line.
struct AuditBlock {
  std::string started;
  std::string ended;
  std::string runtimeSeconds;
  std::string user;
  std::string server;
  std::string path;
  bool fullAccess = false;
  std::optional<std::uint64_t> sizeBefore;
  std::optional<std::uint64_t> sizeAfter;
  bool cameToItsEnd = false;  // It has the line of the size after the archive, whatever it says.
};

struct NoteCounts {
  std::uint64_t listed = 0;
  std::uint64_t exported = 0;  // With a file, whatever else is missing.
  std::uint64_t exportedWithLoss = 0;
  std::uint64_t wholeDespiteDeath = 0;
  std::uint64_t lost = 0;
  std::uint64_t notReached = 0;
  std::uint64_t contradicted = 0;
  std::uint64_t unaccounted = 0;
};

struct Account {
  bool archive = true;  // False: the plain form of design notes.
  NoteCounts notes;
  std::vector<FolderCount> folders;
  AuditBlock audit;
  std::vector<Loss> losses;       // In ascending order of IDs; those without an ID come last.
  std::vector<Finding> findings;  // Likewise.
  std::vector<Warning> warnings;
  std::vector<FileRecord> records;  // Views, raw copies, acl.dxl and db.dxl, as they are now.

  // kWhole, kLosses, or kIncomplete when there is a finding.
  ExitCode Verdict() const;
};

}  // namespace larkspan::console
