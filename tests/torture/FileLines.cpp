#include "tests/torture/FileLines.h"

#include <algorithm>
#include <functional>

#include "tests/torture/Sequence.h"

namespace larkspan::torture {

namespace {

std::size_t LeastLines(const std::string& name, const FileCase& fault, const CleanLines& clean) {
  const std::size_t all = clean.lines.size();
  if (fault.file != name || !CostsALine(fault.operation)) return all;
  if (!fault.andAllLater) return all - 1;
  const auto writes = std::count(clean.operations.begin(), clean.operations.end(), "write " + name);
  const std::size_t earlier = all - std::min(all, static_cast<std::size_t>(writes));
  return std::min(all, earlier + LinesBefore(fault, clean.operations, name));
}

}  // namespace

bool CostsALine(const std::string& operation) {
  return operation == "open" || operation == "write";
}

// It is opened, and then read or written.
bool IsUnread(const FileCase& fault, const std::vector<std::string>& operations) {
  if (fault.operation != "open") return fault.operation == "read";
  const auto read = std::find(operations.begin(), operations.end(), "read " + fault.file);
  const auto opens = std::count(operations.begin(), read, "open " + fault.file);
  return fault.andAllLater ? fault.call <= opens : fault.call == opens;
}

std::size_t LinesBefore(const FileCase& fault, const std::vector<std::string>& operations,
                        const std::string& name) {
  const std::string struck = fault.operation + " " + (fault.file == "*" ? "" : fault.file);
  int calls = 0;
  std::size_t lines = 0;
  for (const std::string& operation : operations) {
    const bool isStruck = fault.file == "*" ? operation.starts_with(struck) : operation == struck;
    if (isStruck && ++calls == fault.call) break;
    if (operation == "write " + name) ++lines;
  }
  return lines;
}

void CheckLinesOf(const std::string& name, const FileCase& fault, const CleanLines& clean,
                  const Lines& found, Lines& findings) {
  const std::size_t least = LeastLines(name, fault, clean);
  if (found.size() < least) {
    findings.push_back(name + " has only " + std::to_string(found.size()) + " lines of " +
                       std::to_string(least));
  }
  if (!AreFoundIn(found, clean.lines, std::equal_to<std::string>())) {
    findings.push_back(name + " has strange lines");
  }
}

}  // namespace larkspan::torture
