#include "tests/torture/FileCase.h"

#include <array>
#include <map>
#include <utility>

namespace larkspan::torture {

namespace {

constexpr std::array kErrors = {"diskFull", "sharingViolation", "accessDenied", "pathTooLong"};

// Where a call fails in every way, the ways take turns over the calls.
std::string ErrorOf(int call, bool andAllLater) {
  return kErrors[static_cast<std::size_t>(call - 1 + (andAllLater ? 2 : 0)) % kErrors.size()];
}

void AddCases(FileCase fault, std::vector<FileCase>& cases) {
  for (const bool andAllLater : {false, true}) {
    fault.andAllLater = andAllLater;
    if (fault.call == 1) {
      for (const char* const error : kErrors) {
        fault.error = error;
        cases.push_back(fault);
      }
    } else {
      fault.error = ErrorOf(fault.call, andAllLater);
      cases.push_back(fault);
    }
  }
}

// Some of the bytes of the first write find room.
void AddFullDisks(int writes, std::vector<FileCase>& cases) {
  constexpr std::size_t kBytesWithRoom = 5;
  for (int write = 1; write <= writes; ++write) {
    cases.push_back({.operation = "write",
                     .file = "*",
                     .call = write,
                     .andAllLater = true,
                     .error = "diskFull",
                     .bytes = kBytesWithRoom});
  }
}

}  // namespace

std::string PlanOf(const FileCase& fault) {
  const std::string plan = fault.operation + " " + fault.file + " " + std::to_string(fault.call) +
                           (fault.andAllLater ? "- " : " ") + fault.error;
  return fault.bytes == 0 ? plan : plan + " " + std::to_string(fault.bytes);
}

std::string Describe(const FileCase& fault) {
  return fault.operation + " " + fault.file + " call " + std::to_string(fault.call) +
         (fault.andAllLater ? " and all later fail with " : " fails with ") + fault.error;
}

bool IsCore(const FileCase& fault) {
  return fault.call == 1 && fault.error == ErrorOf(1, fault.andAllLater);
}

std::vector<FileCase> FileCases(const std::vector<std::string>& operations) {
  std::vector<FileCase> cases;
  std::map<std::string, int> calls;
  int writes = 0;
  std::string previous;
  for (const std::string& operation : operations) {
    const std::size_t blank = operation.find(' ');
    FileCase fault{.operation = operation.substr(0, blank),
                   .file = operation.substr(blank + 1),
                   .call = ++calls[operation],
                   .error = ""};
    fault.closesRead = operation == "close " + fault.file && previous == "read " + fault.file;
    previous = operation;
    if (fault.operation == "write") ++writes;
    AddCases(std::move(fault), cases);
  }
  AddFullDisks(writes, cases);
  return cases;
}

}  // namespace larkspan::torture
