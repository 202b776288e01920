// The started flag is what makes the end happen once, whoever comes first: the worker, its
// termination handler, or the thread that closes after a crash.
#include "notes/Runtime.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>

#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr std::size_t kArgumentCapacity = 260;
using Argument = std::array<char, kArgumentCapacity>;

// Atomic, since after a crash another thread may end the runtime.
std::atomic<bool> runtimeStarted{false};

// From here on what the process has done stands. Atomic, since another thread tells of an exception
// that nobody could catch.
std::atomic<bool> runtimeEnding{false};

// The library may install a filter of its own for faults that nobody handles. That of this program
// is then back in its place when the runtime is started: what is done after a crash hangs on it.
class KeptCrashFilter {
 public:
  KeptCrashFilter() : filter_(SetUnhandledExceptionFilter(nullptr)) { Install(); }
  ~KeptCrashFilter() { Install(); }
  KeptCrashFilter(const KeptCrashFilter&) = delete;
  KeptCrashFilter& operator=(const KeptCrashFilter&) = delete;

 private:
  void Install() const { SetUnhandledExceptionFilter(filter_); }

  LPTOP_LEVEL_EXCEPTION_FILTER filter_;
};

// The text in the ANSI code page, cut to the argument's size and ended with a NUL.
Argument ToAnsiArgument(const std::wstring& text) {
  const int units = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_ACP, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  std::string ansi(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_ACP, 0, text.data(), units, ansi.data(), bytes, nullptr, nullptr);
  Argument argument{};
  ansi.copy(argument.data(), argument.size() - 1);
  return argument;
}

}  // namespace

Status StartNotesRuntime(const std::wstring& programPath,
                         const std::vector<std::wstring>& runtimeArguments) {
  Argument program = ToAnsiArgument(programPath);
  Argument configuration{};
  if (!runtimeArguments.empty()) configuration = ToAnsiArgument(runtimeArguments.back());

  // Only one "=" argument has a place. The count tells of each of them nevertheless, so the vector
  // goes on with empty texts: the library finds a text behind every entry that the count promises.
  Argument none{};
  const std::size_t count = 1 + runtimeArguments.size();
  std::vector<char*> vector(count + 1, none.data());
  vector[0] = program.data();
  if (count > 1) vector[1] = configuration.data();
  vector[count] = nullptr;

  runtimeEnding = false;
  const KeptCrashFilter filter;
  const Status status(notes_api::NotesInitExtended(static_cast<int>(count), vector.data()));
  if (status.ok()) runtimeStarted = true;
  return status;
}

void EndNotesRuntime() {
  // Cleared first, so that a crash in here does not lead here again.
  if (!runtimeStarted.exchange(false)) return;
  runtimeEnding = true;
  LogDebug(L"Trying to NotesTerm");
  notes_api::NotesTerm();
  LogDebug(L"NotesTermed");
}

bool IsNotesRuntimeEnding() { return runtimeEnding; }

void LogExceptionOfTheEnd() {
  LogWarning(L"The end of the Notes runtime was ended by an exception");
}

}  // namespace larkspan
