// Real workers of larkspan.exe in a folder that nobody keeps, watched from their start to their
// end. A worker that hangs or crashes is a finding, and leaves nothing running.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "console/doctor/DoctorRequest.h"
#include "console/follow/Exporter.h"
#include "console/follow/ProgressLine.h"
#include "console/follow/StopRequests.h"

namespace larkspan::console {

// What every trial is run with.
struct TrialSurroundings {
  const DoctorRequest& request;
  const std::wstring& program;   // larkspan.exe
  const std::wstring& password;  // Of the ID file; empty: none.
  StopRequests& stops;
};

struct TrialEnd {
  enum class Kind {
    kNotStarted,  // `code` is the system's error.
    kOwnEnd,
    kDied,  // `code` is the exit code.
    kHung,  // It was ended after the time that it may take.
    kStopped,
  };

  Kind kind = Kind::kOwnEnd;
  std::uint32_t code = 0;
  bool isOpen = false;  // A progress line said that the database is open.
};

// Runs the first worker of an export of this database into the folder. It is asked to stop as soon
// as the database is open: it then lists the notes and exports none.
TrialEnd RunFirstWorker(const TrialSurroundings& around, const ExportRequest& run,
                        const std::wstring& folder);

// Runs workers, which an earlier one that died does not end, on the list of notes that the folder
// holds. Gives the notes at which one hung.
struct NotesTrialEnd {
  bool wasStopped = false;
  std::vector<std::uint32_t> hung;
};
NotesTrialEnd RunListedNotes(const TrialSurroundings& around, const std::wstring& folder,
                             std::uint32_t firstNote);

// What the folder's log says: its last ERROR, empty when there is none, and the WARNINGs that are
// about no note.
std::string LastErrorIn(const std::wstring& folder);
std::vector<std::string> WarningsIn(const std::wstring& folder);

}  // namespace larkspan::console
