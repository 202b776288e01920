// How a supervisor learns that its worker came to its own end. The exit code cannot tell: a library
// can end the process that it runs in with any code, also with that of a success.
//
// The sign is an event of the session whose name both sides can make: from the process ID of the
// supervisor, which the worker learns as its parent's, the output folder and the resume note ID. So
// nothing is added to the worker's environment or to the handles that it inherits, nothing that the
// library starts inherits the event, and one process can supervise several workers, each with a
// folder of its own.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace larkspan {

// The supervisor's side, made before the worker. The folder is the worker's -o, to the letter.
class EndSignal {
 public:
  EndSignal(const std::wstring& outputFolder, std::uint32_t resumeNoteId);
  ~EndSignal();
  EndSignal(const EndSignal&) = delete;
  EndSignal& operator=(const EndSignal&) = delete;

  // False when the system gave no event, or one that somebody else has made: nothing can be known
  // of the worker's end then.
  bool IsAvailable() const { return event_ != nullptr; }

  bool IsGiven() const;

 private:
  HANDLE event_;
};

// The worker's side, made before the Notes runtime is started. Main thread.
class EndSignalGiver {
 public:
  EndSignalGiver(const std::wstring& outputFolder, std::uint32_t resumeNoteId);
  ~EndSignalGiver();
  EndSignalGiver(const EndSignalGiver&) = delete;
  EndSignalGiver& operator=(const EndSignalGiver&) = delete;

  // The last that a worker does. Without a supervisor that waits for it, nothing happens.
  void Give() const;

 private:
  HANDLE event_;
};

}  // namespace larkspan
