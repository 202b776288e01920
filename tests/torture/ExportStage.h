// Whole exports in this process: the supervisor, and instead of processes the worker itself, over
// the stand-in library. Nothing waits.
#pragma once

#include <string>

#include "tests/support/OutputTree.h"
#include "tests/torture/Outcome.h"
#include "tests/torture/Stage.h"
#include "tests/torture/Subject.h"

namespace larkspan::torture {

class ExportStage : public Stage {
 public:
  // Writes the library's configuration for the subject's data folder into a folder of its own. One
  // at a time; it changes the settings of this process.
  explicit ExportStage(const Subject& subject);

  // Exports into an empty folder, with a fault plan for the library, an array in JSON.
  Outcome Export(const std::string& faultPlan);

  const Subject& subject() const { return subject_; }

  // Whether temp.tmp is what the worker that died was writing: it lies there until the next export.
  bool LeavesTheEarlierHalf(const testing::OutputTree& tree) const;

  // What the worker that died left behind; empty when there was none.
  const testing::OutputTree& earlierWorker() const { return earlierWorker_; }

 private:
  void UseSettings();
  void DieAtTheResumeNote();

  const Subject subject_;
  testing::OutputTree earlierWorker_;
};

}  // namespace larkspan::torture
