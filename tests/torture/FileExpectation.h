// What may follow from an operation that fails on one of the program's own files.
#pragma once

#include <string>

#include "tests/torture/Expectation.h"
#include "tests/torture/FileCase.h"

namespace larkspan::torture {

// The lines that the run log then holds; everything else follows from the files and those lines.
// What did not reach temp.tmp, a stage or the marker has to be told even where all of it is on
// disk.
Expectation FileExpectationOf(const FileCase& fault);

// Whether that file holds lines which the export never needs: they are lost, and no more.
bool IsReport(const std::string& file);

}  // namespace larkspan::torture
