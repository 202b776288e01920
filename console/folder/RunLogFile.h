// What log.txt says: of which notes something is lost, and why a run ended early.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/folder/NoteLine.h"
#include "console/folder/SharedFile.h"

namespace larkspan::console {

struct RepeatedText {
  std::string text;
  std::uint64_t times = 0;
};

struct RunLogFacts {
  FileReading reading = FileReading::kMissing;
  std::vector<NoteLine>
      notes;  // By ascending ID, then as they were told; each fault of a note once.
  std::uint64_t majorLines = 0;
  std::uint64_t minorLines = 0;
  std::vector<std::string> unnamed;  // "Major:" and "Minor:" lines that name no note; some of them.
  std::uint64_t unnamedLines = 0;
  std::vector<RepeatedText> errors;    // The messages of ERROR lines, each once.
  std::string lastError;               // Empty: there is none.
  std::string lastBreakOff;            // The last ERROR after which no line names the notes left.
  std::vector<RepeatedText> warnings;  // The messages that are about no note, and not the next.
  std::uint64_t otherWarnings = 0;     // Beyond the first thousand texts.
  std::optional<std::string> aclCause;
  std::uint64_t formlessLines = 0;  // No line of the log's own form.
};

RunLogFacts ReadRunLogFile(const std::wstring& folder);

}  // namespace larkspan::console
