// larkspan_floor.exe KIND ...: does one floor. As an export does, what writes notes and views runs
// in a process of its own, which another one starts and waits for.
#include <cstdio>
#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include "bench/floor/Floors.h"

namespace larkspan::bench {

namespace {

using Arguments = std::vector<std::wstring>;

std::uint32_t Number(const std::wstring& text) {
  return static_cast<std::uint32_t>(std::wcstoul(text.c_str(), nullptr, 10));
}

// Starts the second kind on the folder that the first one was given.
void StartAs(const wchar_t* kind, const Arguments& arguments) {
  std::wstring line = kind;
  for (const std::wstring& argument : arguments) line += L" \"" + argument + L'"';
  StartOneself(line);
}

bool Run(std::wstring_view kind, const Arguments& arguments) {
  const auto is = [&](std::wstring_view name, std::size_t count) {
    return kind == name && arguments.size() == count;
  };
  if (is(L"notes", 2)) return StartAs(L"notes-worker", arguments), true;
  if (is(L"notes-worker", 2)) return WriteNotes(arguments[0], Number(arguments[1])), true;
  if (is(L"views", 1)) return StartAs(L"views-worker", arguments), true;
  if (is(L"views-worker", 1)) return PrintViews(arguments[0], Printing::kIntoTheFile), true;
  if (is(L"views-in-memory", 1)) return StartAs(L"views-in-memory-worker", arguments), true;
  if (is(L"views-in-memory-worker", 1)) return PrintViews(arguments[0], Printing::kInMemory), true;
  if (is(L"listing", 1)) return WriteListing(arguments[0]), true;
  if (is(L"listing-by-system", 1)) return WriteListingBySystem(arguments[0]), true;
  if (is(L"crashes", 1)) return StartAndCrash(arguments[0]), true;
  if (is(L"crash", 2)) return CrashAtNote(arguments[0], Number(arguments[1])), true;
  if (is(L"read", 1)) return std::printf("%u\n", ReadFiles(arguments[0])) > 0;
  if (is(L"start", 2)) return StartTimes(Number(arguments[0]), arguments[1]), true;
  if (is(L"time", 1)) {
    return std::printf("%lld\n", static_cast<long long>(TimeOf(arguments[0]))) > 0;
  }
  if (is(L"handles", 2)) {
    const HandlePeaks peaks = PeakHandlesOf(arguments[0], arguments[1]);
    return std::printf("%u %u\n", peaks.program, peaks.child) > 0;
  }
  if (is(L"runtime", 0)) return StartRuntime(), true;
  return false;
}

}  // namespace

}  // namespace larkspan::bench

int wmain(int argc, wchar_t** argv) {
  const std::vector<std::wstring> all(argv + 1, argv + argc);
  if (!all.empty() && larkspan::bench::Run(all[0], {all.begin() + 1, all.end()})) return 0;
  std::fputs(
      "Usage: larkspan_floor notes FOLDER BEHIND | views FOLDER |\n"
      "  views-in-memory FOLDER | listing FOLDER |\n"
      "  listing-by-system FOLDER | crashes FOLDER | read FOLDER | start COUNT "
      "COMMAND | time COMMAND |\n"
      "  handles COMMAND UNTIL | runtime\n",
      stderr);
  return 2;
}
