// Whole exports in this process: the supervisor, and instead of processes the worker itself, over
// the stand-in library. Nothing waits.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/OutputTree.h"
#include "tests/support/TempFolder.h"
#include "tests/torture/Subject.h"

namespace larkspan::torture {

using Lines = std::vector<std::string>;

// What an export left behind.
struct Outcome {
  testing::OutputTree tree;
  Lines log;                            // Without line ends.
  Lines audit;                          // Likewise, with the times masked.
  std::map<std::string, int> calls;     // Of the library, in the last runtime.
  std::map<std::string, int> leftOpen;  // In the library, at the end of the last runtime.
};

// The lines of a file of the tree; none when there is no such file.
Lines LinesOf(const testing::OutputTree& tree, const std::string& name);

class ExportStage {
 public:
  // Writes the library's configuration for the subject's data folder into a folder of its own. One
  // at a time; it changes the settings of this process.
  explicit ExportStage(const Subject& subject);

  // Exports into an empty folder, with a fault plan for the library, an array in JSON.
  Outcome Export(const std::string& faultPlan);

  // The "=" argument that names the library's configuration.
  std::wstring ConfigurationArgument() const;

  const Subject& subject() const { return subject_; }

 private:
  void UseSettings();
  void DieAtTheResumeNote();

  const Subject subject_;
  TempFolder folder_{L"larkspan-torture"};
  std::wstring output_ = folder_ / L"\\out";
  testing::OutputTree earlierWorker_;  // What the one that died left behind.
};

}  // namespace larkspan::torture
