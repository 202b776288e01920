#include "standin/Strict.h"

#include <fstream>

#include "standin/Platform.h"

namespace larkspan::standin {

namespace {

std::filesystem::path& StrictLog() {
  static std::filesystem::path path;
  return path;
}

const char*& Current() {
  static const char* name = "";
  return name;
}

}  // namespace

void SetStrictLog(const std::filesystem::path& path) { StrictLog() = path; }

void SetCurrentEntry(const char* name) { Current() = name; }

const char* CurrentEntry() { return Current(); }

void StrictFailure(const std::string& message) {
  const std::string line = std::string("nnotes: ") + CurrentEntry() + ": " + message + "\n";
  WriteToStandardError(line);
  if (!StrictLog().empty()) std::ofstream(StrictLog(), std::ios::app | std::ios::binary) << line;
  EndProcessNow(kStrictExitCode);
}

void Require(bool condition, const char* message) {
  if (!condition) StrictFailure(message);
}

}  // namespace larkspan::standin
