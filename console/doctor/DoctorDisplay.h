// Shows the checks to a person, to a program, or to nobody but for what failed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/doctor/Check.h"
#include "console/show/LineSink.h"

namespace larkspan::console {

class DoctorDisplay {
 public:
  virtual ~DoctorDisplay() = default;

  // A check begins; it may take long.
  virtual void Begin(const std::string& /*name*/) {}

  // It is done.
  virtual void Tell(const Check& /*check*/) {}

  // All are done.
  virtual void End(const std::vector<Check>& /*checks*/, ExitCode /*code*/) {}
};

// A row for each check when it is done: its name, what came of it, the detail, and below that what
// to do. On a terminal within the width of the window, with colours where it takes them.
std::unique_ptr<DoctorDisplay> MakeDoctorTable(LineSink& output);

// One JSON document at the end.
std::unique_ptr<DoctorDisplay> MakeDoctorJson(LineSink& output);

// Failed checks alone, as errors.
std::unique_ptr<DoctorDisplay> MakeQuietDoctor(LineSink& errors);

// The text in lines of at most so many columns, two or more, broken between words, and within one
// only where it is longer than a line.
std::vector<std::string> WrapWords(const std::string& text, int columns);

}  // namespace larkspan::console
