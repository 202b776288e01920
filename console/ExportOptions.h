// The options that commands have in common which export, and how they take their values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/ExitCode.h"
#include "console/follow/ExportRequest.h"
#include "console/follow/LineSource.h"
#include "console/follow/Password.h"
#include "console/follow/StopRequests.h"
#include "console/show/MakeRunDisplay.h"

namespace CLI {
class App;
}

namespace larkspan::console {

struct DisplayOptions {
  bool json = false;
  bool quiet = false;

  DisplayMode Mode() const;
};

// --json and --quiet.
void AddDisplayOptions(CLI::App& command, DisplayOptions& options);

// --id-file, --password-file and --password-stdin.
void AddIdentityOptions(CLI::App& command, std::string& idFile, PasswordSources& sources);

// Takes the password where there is an ID file. No value, and `password` has it, when the command
// goes on; else the code that it ends with, after the reason has gone to standard error.
std::optional<ExitCode> TakeIdentity(const std::string& idFile, const PasswordSources& sources,
                                     const StopRequests& stops, std::optional<LineSource>& input,
                                     std::wstring& password);

struct ExportOptions {
  ExportRequest request;
  PasswordSources password;
  std::string stall;
  std::string maxLosses;
  std::uint32_t giveUp = 0;
  bool designOnly = false;
  bool noViews = false;
  DisplayOptions display;
};

// What is exported, and as whom.
void AddContentOptions(CLI::App& command, ExportOptions& options);

// When an export ends itself: --stall, --give-up, --max-losses, --stop-on-stdin-end.
void AddEndOptions(CLI::App& command, ExportOptions& options);

// Brings the values into the request. Empty, or what is wrong with one.
std::string TakeValues(ExportOptions& options);

// Standard input, read from the first call on.
LineSource& InputSource(std::optional<LineSource>& input);

// Says why on standard error, and gives the code.
ExitCode Refuse(ExitCode code, const std::string& why);

}  // namespace larkspan::console
