// An exporter at work, as the console follows it: larkspan.exe as a process, or workers that this
// program supervises itself.
#pragma once

#include <windows.h>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

class Exporter {
 public:
  virtual ~Exporter() = default;

  // Set when nothing of the exporter is at work any more, or its supervisor has gone.
  virtual HANDLE ended() const = 0;

  // What the workers write, for whoever reads it to its end.
  virtual SystemHandle TakeOutput() = 0;

  // Asks for the end at the next view or note. Again: nothing happens.
  virtual void AskToStop() = 0;

  // Ends everything at once.
  virtual void EndAll() = 0;

  // Ends the worker, so that the supervisor goes on after its note. False when none is at work.
  virtual bool EndWorker() = 0;
};

}  // namespace larkspan::console
