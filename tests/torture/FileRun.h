// What the sweeps of failing files over exports and over listings share.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/torture/FileCase.h"
#include "tests/torture/Options.h"
#include "tests/torture/Outcome.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

using FileRun = std::function<Outcome()>;

// Runs it without a fault, and gives the operations on its files.
Outcome RecordOperations(const FileRun& run, std::vector<std::string>& operations);

Outcome RunWithFault(const FileCase& fault, const FileRun& run);

// Hands over each case of those operations that is chosen, and prints the subject's figures.
void ForEachFileCase(const std::string& subject, const std::vector<std::string>& operations,
                     const Options& options, Report& report,
                     const std::function<void(const FileCase&)>& runCase);

}  // namespace larkspan::torture
