// What the sweeps of the disk's faults over exports and over listings share.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/torture/DiskCase.h"
#include "tests/torture/Options.h"
#include "tests/torture/Outcome.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

using DiskRun = std::function<Outcome()>;

// Runs it without a fault, and gives the operations on its files.
Outcome RecordOperations(const DiskRun& run, std::vector<std::string>& operations);

Outcome RunWithFault(const DiskCase& fault, const DiskRun& run);

// Hands over each case of those operations that is chosen, and prints the subject's figures.
void ForEachDiskCase(const std::string& subject, const std::vector<std::string>& operations,
                     const Options& options, Report& report,
                     const std::function<void(const DiskCase&)>& runCase);

}  // namespace larkspan::torture
