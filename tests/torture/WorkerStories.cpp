#include "tests/torture/WorkerStories.h"

#include <cstdlib>

#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"

namespace larkspan::torture {

namespace {

const std::string kTop = std::string("#DEBUG# - ") + message::kWorkerBegins;
constexpr char kDied[] = "#DEBUG# - Child process returned non-zero value (";
constexpr char kThrown[] = "#DEBUG# - Exiting via catch-all handler";
constexpr char kClosed[] = "#DEBUG# - Exiting via SEH finally";
const std::string kMarker = std::string("#DEBUG# - ") + message::kMarkerRead;
constexpr char kError[] = "#ERROR# - ";

// The number behind the beginning of the line.
std::uint32_t NumberBehind(const std::string& line, const std::string& beginning, int base) {
  return static_cast<std::uint32_t>(std::strtoul(line.c_str() + beginning.size(), nullptr, base));
}

void CheckOrder(const std::vector<WorkerStory>& stories, const Lines& log, Lines& findings) {
  for (std::size_t i = 1; i < stories.size(); ++i) {
    const std::string name = NoteIdText(stories[i].startedAt);
    if (stories[i - 1].marker != stories[i].startedAt) {
      findings.push_back("a worker begins at " + name + ", where none was");
    }
    if (stories[i].startedAt <= stories[i - 1].startedAt) {
      findings.push_back("a worker goes back to " + name);
    }
    if (CountMessages(log, message::kIncompleteRun + name) != 1) {
      findings.push_back("the death at " + name + " is not told once");
    }
  }
  const std::size_t told = static_cast<std::size_t>(CountMessages(log, message::kIncompleteRun));
  if (stories.empty() || told != stories.size() - 1) findings.push_back("deaths that were none");
  if (!stories.empty() && stories.back().marker) findings.push_back("the last worker is not it");
}

// The ERROR lines with a message that begins so.
Lines LinesWith(const Lines& log, const std::string& message) {
  Lines lines;
  for (const std::string& line : log) {
    if (line.starts_with(kError + message)) lines.push_back(line);
  }
  return lines;
}

// A death outside of a note is the run's end, and has a line of its own.
void CheckEndOutsideANote(const std::vector<WorkerStory>& stories, const Lines& log,
                          Lines& findings) {
  const bool isOutside = !stories.empty() && stories.back().died() && !stories.back().marker;
  Lines returned;
  Lines exceptions;
  if (isOutside && stories.back().wasCutOff()) {
    returned.push_back(kError +
                       (message::kWorkerReturned + std::to_string(stories.back().exitCode)) +
                       " outside a note; the export may be incomplete");
  }
  if (isOutside && stories.back().wasThrown)
    exceptions.push_back(std::string(kError) + message::kExportException);
  if (LinesWith(log, message::kWorkerReturned) != returned ||
      LinesWith(log, message::kExportException) != exceptions) {
    findings.push_back("the end outside a note is not told as it was");
  }
}

}  // namespace

std::vector<WorkerStory> ReadStories(const Lines& log, Lines& findings) {
  std::vector<WorkerStory> stories;
  for (const std::string& line : log) {
    if (line.starts_with(kTop)) {
      stories.push_back({.startedAt = NumberBehind(line, kTop, 16)});
    } else if (!stories.empty() && line.starts_with(kDied)) {
      stories.back().exitCode = NumberBehind(line, kDied, 10);
    } else if (!stories.empty() && line.starts_with(kThrown)) {
      stories.back().wasThrown = true;
    } else if (!stories.empty() && line == kClosed) {
      stories.back().hasClosed = true;
    } else if (!stories.empty() && line.starts_with(kMarker)) {
      stories.back().marker = NumberBehind(line, kMarker, 16);
    }
  }
  CheckOrder(stories, log, findings);
  CheckEndOutsideANote(stories, log, findings);
  return stories;
}

}  // namespace larkspan::torture
