// outcome.json: what an export says of itself, there from its first moment, renewed while it runs
// and replaced whole, so that a monitor can tell a run that goes on from one that died. It never
// holds a secret. Its form is documented in docs/console.md and docs/outcome.schema.json.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/account/Account.h"

namespace larkspan::console {

inline constexpr wchar_t kOutcomeFile[] = L"\\outcome.json";

// Times are UTC, "2026-11-22T07:40:55Z"; empty: not yet.
struct Restart {
  std::string time;
  std::optional<std::uint32_t> note;  // At which the worker ended; none among the views.
  std::string cause;                  // "crash" or "stall".
};

struct Stop {
  std::string time;
  std::string by;  // "user", "input", "output", "disk", "stall", "give-up", "force".
};

struct Resumed {
  std::string time;
  std::optional<std::uint32_t> triedAgain;  // The note at which the run had been cut off.
};

struct OutcomeProgress {
  std::string phase;  // "starting", "opening", "properties", "views", "scanning", "documents",
                      // "checking", "ended".
  std::optional<std::uint64_t> views;  // Of all; none while it is not known.
  std::uint64_t viewsDone = 0;
  std::optional<std::uint64_t> documents;
  std::uint64_t documentsDone = 0;
  std::optional<std::uint32_t> note;  // The last that was begun.
};

struct Outcome {
  enum class State { kRunning, kEnded };

  State state = State::kRunning;
  std::vector<std::string> command;  // The arguments, without any secret.
  std::string consoleVersion;
  std::string larkspanVersion;
  std::string host;
  std::string user;

  // What is exported, as it was asked for. A run is taken up again with the same.
  std::string server;
  std::string path;
  bool archive = true;
  bool views = true;
  bool fullAccess = false;
  std::string idFile;
  std::string notesIni;

  std::string started;
  std::string updated;
  std::string ended;
  std::optional<ExitCode> exitCode;  // With state kEnded.
  std::string reason;                // One sentence for a code other than 0.

  OutcomeProgress progress;
  std::vector<Restart> restarts;
  std::optional<Stop> stop;
  std::vector<Resumed> resumed;
  std::vector<Loss> lostViews;     // Only the run itself knows them.
  std::vector<Warning> warnings;   // The run's own; those of the account are beside it.
  std::optional<Account> account;  // With state kEnded, when there was something to judge.
};

// Replaces the file whole. False, and the earlier one stays, when it could not be written.
bool WriteOutcome(const std::wstring& folder, const Outcome& outcome);

enum class OutcomeReading { kRead, kMissing, kUnreadable };

// kUnreadable: it cannot be opened, or is not of this form; `outcome` is then as it was.
OutcomeReading ReadOutcome(const std::wstring& folder, Outcome& outcome);

// The JSON text of an account, for `verify --json` and within outcome.json.
std::string AccountJson(const Account& account);

}  // namespace larkspan::console
