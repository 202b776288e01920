// What the design of an export demands of the system, done by itself: the same operations on the
// same files, from content that was made before. What fails ends the process.
#pragma once

#include <cstdint>
#include <string>

namespace larkspan::bench {

// For each note behind the first one: the marker file, a line of the UNID index, the deletion of
// temp.tmp, an open, write and close for each chunk, the move, the deletion of the marker file.
// `folder` has the subfolder `data` afterwards.
void WriteNotes(const std::wstring& folder, std::uint32_t behind);

// tinyxml2's printer writes each piece by itself into a file, or gathers all of it in memory, which
// no program can do with a view of any size.
enum class Printing { kIntoTheFile, kInMemory };

// Each view by the printer into a temporary file, which is copied into place, with line ends of two
// bytes. `folder` has the subfolder `views` afterwards.
void PrintViews(const std::wstring& folder, Printing printing);

// scan.txt, each line by itself: written and flushed through a text stream of the C runtime, or in
// one write of the system.
void WriteListing(const std::wstring& folder);
void WriteListingBySystem(const std::wstring& folder);

// A process for each note, which writes the marker file and crashes; the marker file is read and
// deleted in between.
void StartAndCrash(const std::wstring& folder);

// One of those processes.
void CrashAtNote(const std::wstring& folder, std::uint32_t note);

// The files of the folder and its subfolders, each read and parsed by expat. Returns how many.
std::uint32_t ReadFiles(const std::wstring& folder);

// Starts a program so many times, one after the other, and waits for its end, which must be good.
void StartTimes(std::uint32_t count, const std::wstring& commandLine);

// The time from a program's start to its end, which must be good, in microseconds.
std::int64_t TimeOf(const std::wstring& commandLine);

// The most handles that a program, and one of those that it starts itself, had at a time: from its
// start to its end, which must be good, or until that path is there, where it is ended by force. An
// empty path: never.
struct HandlePeaks {
  std::uint32_t program = 0;
  std::uint32_t child = 0;
};
HandlePeaks PeakHandlesOf(const std::wstring& commandLine, const std::wstring& until);

// Starts the Notes runtime and ends it.
void StartRuntime();

// Starts this program with these arguments and waits for its end, which must be good.
void StartOneself(const std::wstring& arguments);

// A program that was started; ExitCodeOf waits for its end.
struct StartedProgram {
  void* process = nullptr;
  std::uint32_t id = 0;
};
StartedProgram Start(std::wstring commandLine);
std::uint32_t ExitCodeOf(const StartedProgram& program);

}  // namespace larkspan::bench
