#include "tests/torture/FileRun.h"

#include "tests/faults/FileFaults.h"

namespace larkspan::torture {

Outcome RecordOperations(const FileRun& run, std::vector<std::string>& operations) {
  const FileFaults record;
  Outcome outcome = run();
  operations = record.Operations();
  return outcome;
}

Outcome RunWithFault(const FileCase& fault, const FileRun& run) {
  const FileFaults faults(PlanOf(fault));
  return run();
}

void ForEachFileCase(const std::string& subject, const std::vector<std::string>& operations,
                     const Options& options, Report& report,
                     const std::function<void(const FileCase&)>& runCase) {
  std::vector<FileCase> cases = FileCases(operations);
  const std::size_t all = cases.size();
  Choose(options, cases, report);
  for (const FileCase& fault : cases) runCase(fault);
  report.PrintFigures(subject, std::to_string(operations.size()) + " operations, " +
                                   std::to_string(all) + " cases");
}

}  // namespace larkspan::torture
