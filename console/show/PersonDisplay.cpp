#include "console/show/PersonDisplay.h"

#include "console/show/Sentences.h"

namespace larkspan::console {

namespace {

// More of them would drive everything else off the screen; all are in outcome.json.
constexpr std::uint64_t kLossLines = 20;

}  // namespace

void PersonDisplay::Update(const RunView& view, std::uint64_t nowMilliseconds) {
  if (view.phase == "documents") rate_.Add(nowMilliseconds, view.documentsDone);
  printer_.Show(view, PaceOf(rate_, view), nowMilliseconds);
}

void PersonDisplay::Start(const StartEvent& start) { Message(StartSentence(start)); }

void PersonDisplay::Restart(const RestartEvent& restart) { Message(RestartSentence(restart)); }

void PersonDisplay::Lost(const LostEvent& lost) {
  if (++losses_ <= kLossLines) Message(LossSentence(lost.loss));
  if (losses_ == kLossLines + 1) Message("Further losses are only counted here.");
}

void PersonDisplay::Warn(const Warning& warning) { Message("Warning: " + warning.text); }

void PersonDisplay::Stop(const std::string& by) { Message(StopSentence(by)); }

void PersonDisplay::Retry(const RetryEvent& retry) { Message(RetrySentence(retry)); }

void PersonDisplay::Ready(const ReadyEvent& ready) { Message(ReadySentence(ready)); }

void PersonDisplay::End(const EndEvent& end) {
  Finish();
  Message(EndSentence(end));
}

// Both streams are most often the same terminal, where the status would stand in the way.
void PersonDisplay::Error(std::string_view text) {
  if (errors_.IsTerminal()) Finish();
  errors_.Write(ErrorText(text));
}

}  // namespace larkspan::console
