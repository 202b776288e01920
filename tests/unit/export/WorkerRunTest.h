// What the tests of a worker's whole run stand on.
#pragma once

#include <cstdint>
#include <string>

#include "export/WorkerRun.h"
#include "report/Progress.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {

// Runs over "test.nsf": documents 902 and 906, form 90A and the stub of a deleted document. Outside
// archive mode unless a test says otherwise. Every run must give back all that it opened, which the
// fixture's end asks the library.
class WorkerRunTest : public NotesFixture {
 protected:
  WorkerRunTest() {
    ClearStopRequestForTesting();
    WriteDatabase(R"({"sizeKilobytes": 6144, "notes": [
      {"id": "00000902"}, {"id": "00000906"}, {"id": "0000090A", "class": "form"}],
      "deleted": [{"id": "0000090E"}]})");
    ChangeSettings([](Settings& settings) { settings.databasePath = L"test.nsf"; });
    Start();
  }
  ~WorkerRunTest() override { ClearStopRequestForTesting(); }

  // What the run writes to standard output is kept.
  void Run(std::uint32_t resumeNoteId = 0) {
    const CapturedOutput output;
    RunExport(resumeNoteId);
    progress_ = output.Flushed();
  }

  Lines AuditLines() const {
    return Exists(PathOf(L"audit.txt")) ? ReadLines(PathOf(L"audit.txt")) : Lines();
  }

  std::string progress_;
};

}  // namespace larkspan
