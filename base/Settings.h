// The settings of this process, taken from its command line once at start and read by whatever
// works for it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/NoteId.h"

namespace larkspan {

inline constexpr std::int64_t kNoPipe = -1;

struct Settings {
  std::wstring programPath;  // The first command-line argument.
  std::wstring server;       // Empty: the local machine.
  std::wstring databasePath;
  std::wstring outputFolder;
  std::uint32_t resumeNoteId = kNoNoteId;
  std::int64_t progressPipe = kNoPipe;  // A handle inherited from the calling program.
  bool archive = false;
  bool scan = false;
  bool fullAccess = false;
  bool servers = false;
  std::wstring idFile;
  std::wstring idPassword;
  bool noViews = false;
  std::int32_t minimumLogLevel = 1;
  std::vector<std::wstring> runtimeArguments;  // Those that begin with "=", in order.
};

// The settings of this process. Any thread may read them; only the start of the program, and tests,
// set them, while no other thread runs; the password, which no other thread reads, is wiped at the
// end.
const Settings& ProcessSettings();

// Nothing of the password stays in the place from which the settings come.
void SetProcessSettings(Settings&& settings);

// Overwrites the password of the settings. The last that happens with them.
void WipePassword();

// The path of an entry of the output folder, from its name, which begins with a backslash.
std::wstring InOutputFolder(std::wstring_view name);

}  // namespace larkspan
