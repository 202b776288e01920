#include "tests/torture/DiskRun.h"

#include "tests/faults/FileFaults.h"

namespace larkspan::torture {

Outcome RecordOperations(const DiskRun& run, std::vector<std::string>& operations) {
  const FileFaults record;
  Outcome outcome = run();
  operations = record.Operations();
  return outcome;
}

Outcome RunWithFault(const DiskCase& fault, const DiskRun& run) {
  const FileFaults faults(PlanOf(fault));
  return run();
}

void ForEachDiskCase(const std::string& subject, const std::vector<std::string>& operations,
                     const Options& options, Report& report,
                     const std::function<void(const DiskCase&)>& runCase) {
  std::vector<DiskCase> cases = AllDiskCases(operations);
  const std::size_t all = cases.size();
  Choose(options, cases, report);
  for (const DiskCase& fault : cases) runCase(fault);
  report.PrintFigures(subject, std::to_string(operations.size()) + " operations, " +
                                   std::to_string(all) + " cases");
}

}  // namespace larkspan::torture
