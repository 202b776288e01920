#include "tests/torture/DiskLines.h"

#include <algorithm>

namespace larkspan::torture {

namespace {

bool AreInOrder(const Lines& found, const Lines& clean) {
  auto rest = clean.begin();
  for (const std::string& line : found) {
    rest = std::find(rest, clean.end(), line);
    if (rest == clean.end()) return false;
    ++rest;
  }
  return true;
}

// Those that were written before the first operation that failed.
std::size_t LinesBefore(const DiskCase& fault, const std::vector<std::string>& operations) {
  int calls = 0;
  std::size_t lines = 0;
  for (const std::string& operation : operations) {
    if (operation == fault.operation + " " + fault.file && ++calls == fault.call) break;
    if (operation == "write " + fault.file) ++lines;
  }
  return lines;
}

}  // namespace

// It is opened, and then read or written.
bool IsUnread(const DiskCase& fault, const std::vector<std::string>& operations) {
  if (fault.operation != "open") return fault.operation == "read";
  const auto read = std::find(operations.begin(), operations.end(), "read " + fault.file);
  const auto opens = std::count(operations.begin(), read, "open " + fault.file);
  return fault.andAllLater ? fault.call <= opens : fault.call == opens;
}

void CheckLinesOf(const std::string& name, const DiskCase& fault, const CleanLines& clean,
                  const Lines& found, Lines& findings) {
  std::size_t least = clean.lines.size();
  if (fault.file == name) {
    const std::size_t before = LinesBefore(fault, clean.operations);
    least = fault.andAllLater ? std::min(before, least) : least - 1;
  }
  if (found.size() < least) {
    findings.push_back(name + " has only " + std::to_string(found.size()) + " lines of " +
                       std::to_string(least));
  }
  if (!AreInOrder(found, clean.lines)) findings.push_back(name + " has strange lines");
}

}  // namespace larkspan::torture
