// What a person sees of a check of a folder while it goes on, and how it is stopped: a line on a
// terminal that says how far it is, and Ctrl+C. A second Ctrl+C ends the program at once.
#pragma once

#include <list>
#include <string>

#include "console/folder/FileProgress.h"
#include "console/follow/StopRequests.h"
#include "console/show/FileProgressLine.h"
#include "console/show/Output.h"

namespace larkspan::console {

class CheckWatch {
 public:
  // Without `isShown`, or where standard output is no terminal, there is no line.
  explicit CheckWatch(bool isShown);

  // What is done to the files now: "Checking". To be used while this object is there.
  FileProgress Watch(std::string verb);

  bool IsStopped() const { return stops_.Count() > 0; }

  // Takes the line away.
  void Clear();

  // Standard output, for what is said then.
  Output& output() { return output_; }

 private:
  bool GoesOn() const;

  Output output_;
  bool isShown_;
  StopRequests stops_;
  std::list<FileProgressLine> lines_;
};

}  // namespace larkspan::console
