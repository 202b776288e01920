#include "console/batch/PersonBatchDisplay.h"

#include <algorithm>

#include "console/batch/BatchSentences.h"
#include "console/show/Sentences.h"
#include "console/show/TextWidth.h"

namespace larkspan::console {

namespace {

constexpr std::uint64_t kRedrawMilliseconds = 200;
constexpr std::uint64_t kPlainMilliseconds = 10'000;

// More of them would leave no room for what happens above.
constexpr std::size_t kRunningLines = 10;

StatusText TextLine(const std::string& text, int width) {
  const std::string cut = CutAtTheEnd(text, std::max(width - 1, 1));
  return {cut, ColumnsOf(cut)};
}

}  // namespace

void PersonBatchDisplay::Start(const BatchStart& start, const BatchCounts& counts) {
  block_.PrintLine(BatchStartSentence(start, counts));
}

bool PersonBatchDisplay::IsDue(std::uint64_t nowMilliseconds) {
  const std::uint64_t pause = output_.IsTerminal() ? kRedrawMilliseconds : kPlainMilliseconds;
  const bool isFirst = !lastShown_;
  if (!isFirst && nowMilliseconds - *lastShown_ < pause) return false;
  lastShown_ = nowMilliseconds;
  return output_.IsTerminal() || !isFirst;
}

void PersonBatchDisplay::Update(const BatchCounts& counts, const std::vector<RunningView>& running,
                                std::uint64_t nowMilliseconds) {
  if (!IsDue(nowMilliseconds)) return;
  if (!output_.IsTerminal()) return block_.PrintLine(BatchCountsText(counts));
  const int width = output_.Width();
  std::vector<StatusText> lines = {TextLine(BatchCountsText(counts), width)};
  for (std::size_t index = 0; index < std::min(running.size(), kRunningLines); ++index)
    lines.push_back(
        StatusLine(running[index].view, running[index].pace, width, output_.TakesColours()));
  if (running.size() > kRunningLines)
    lines.push_back(
        TextLine("and " + std::to_string(running.size() - kRunningLines) + " more", width));
  block_.Show(lines);
}

void PersonBatchDisplay::Begin(const BatchEntry& entry) {
  if (output_.IsTerminal()) return;
  block_.PrintLine(std::string(entry.wasResumed ? "Going on with " : "Exporting ") +
                   DatabaseName(entry.database.server, entry.database.path));
}

void PersonBatchDisplay::Line(const BatchEntry& entry, const std::string& line, bool isEvent) {
  if (isEvent || line.empty()) return;
  block_.PrintLine(DatabaseName(entry.database.server, entry.database.path) + ": " + line);
}

void PersonBatchDisplay::Finish(const BatchEntry& entry) {
  block_.PrintLine(FinishSentence(entry));
  if (output_.IsTerminal()) lastShown_.reset();  // The lines below tell of it still.
}

void PersonBatchDisplay::Stop(const std::string& by) { block_.PrintLine(BatchStopSentence(by)); }

void PersonBatchDisplay::Error(const std::string& text) {
  if (errors_.IsTerminal()) block_.Clear();
  errors_.Write(ErrorText(text));
}

void PersonBatchDisplay::End(const BatchEnd& end) {
  block_.Clear();
  block_.PrintLine(BatchEndSentence(end));
}

}  // namespace larkspan::console
