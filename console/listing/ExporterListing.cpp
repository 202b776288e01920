#include "console/listing/ExporterListing.h"

#include <array>
#include <cstdio>

#include "base/OutputPaths.h"
#include "console/folder/RunLogFile.h"
#include "console/follow/ExporterProcess.h"
#include "console/follow/LineReader.h"
#include "console/follow/LineSource.h"

namespace larkspan::console {

namespace {

// Crashes have codes that are known by their hexadecimal digits.
std::string ExitCodeText(DWORD code) {
  constexpr DWORD kFirstOfSystem = 0x80000000;
  if (code < kFirstOfSystem) return std::to_string(code);
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "0x%08lX", static_cast<unsigned long>(code));
  return text.data();
}

// False when the end was asked for first.
bool AwaitEnd(const ExporterProcess& process, const ExporterListing& listing, StopRequests& stops,
              const std::function<void(std::uint64_t)>& watch) {
  constexpr DWORD kLookMilliseconds = 100;
  FileTail tail(output::Join(listing.folder, listing.file));
  std::uint64_t lines = 0;
  const std::array<HANDLE, 2> handles = {process.ended(), stops.event()};
  while (stops.Count() == 0) {
    watch(lines += tail.ReadNewLines().size());
    const DWORD woken = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(),
                                               FALSE, kLookMilliseconds);
    if (woken == WAIT_OBJECT_0) return true;
  }
  return false;
}

void EndProcess(ExporterProcess& process) {
  constexpr DWORD kLongestMilliseconds = 5000;
  process.EndAll();
  WaitForSingleObject(process.ended(), kLongestMilliseconds);
}

void AddSentence(std::string& text, const std::string& sentence) {
  if (!text.empty()) text += "; ";
  text += sentence;
}

// What the log and the code of a process say that has ended by itself.
ListingEnd Judge(const ExporterListing& listing, DWORD exitCode) {
  ListingEnd end;
  const RunLogFacts log = ReadRunLogFile(listing.folder);
  for (const RepeatedText& error : log.errors) AddSentence(end.fault, error.text);
  for (const RepeatedText& warning : log.warnings) end.warnings.push_back(warning.text);
  if (exitCode != 0)
    AddSentence(end.fault, "larkspan.exe ended with code " + ExitCodeText(exitCode));
  return end;
}

}  // namespace

ListingEnd RunExporterListing(const ExporterListing& listing, StopRequests& stops,
                              const std::function<void(std::uint64_t)>& watch) {
  const std::wstring program = ExporterPath();
  ExporterProcess process(program, listing.arguments, false, listing.password);
  if (!process.Started()) return {false, NotStartedText(program, process.systemError()), {}};
  // It writes nothing there, but the library may.
  const LineSource output(process.TakeOutput());
  if (AwaitEnd(process, listing, stops, watch)) return Judge(listing, process.ExitCode());
  EndProcess(process);
  return {true, {}, {}};
}

}  // namespace larkspan::console
