// How a supervisor learns that its worker came to its own end. The exit code cannot tell: a library
// can end the process that it runs in with any code, also with that of a success.
#pragma once

namespace larkspan {

// The supervisor's side: an event that a process made after it inherits, and whose handle stands in
// the environment variable LARKSPAN_END_SIGNAL for as long as the object lives. One object at a
// time, since a process has one environment.
class EndSignal {
 public:
  EndSignal();
  ~EndSignal();
  EndSignal(const EndSignal&) = delete;
  EndSignal& operator=(const EndSignal&) = delete;

  // False when the system gave no event or took no variable; nothing can be known of the worker's
  // end then.
  bool IsAvailable() const { return event_ != nullptr; }

  bool IsGiven() const;

 private:
  void* event_;
};

// The worker's side, made before the Notes runtime is started: the variable is taken out of the
// environment and the event is inherited no further, so that nothing that the runtime starts can
// give the signal. Only what the library starts while it is loaded, before any code of this program
// runs, still inherits both. The event stays open until the process ends. Main thread.
class EndSignalGiver {
 public:
  EndSignalGiver();

  // The last that a worker does. Without a supervisor that waits for it, nothing happens.
  void Give() const;

 private:
  void* event_;
};

}  // namespace larkspan
