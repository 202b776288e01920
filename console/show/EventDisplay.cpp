#include "console/show/EventDisplay.h"

#include "console/show/Sentences.h"

namespace larkspan::console {

namespace {

constexpr std::uint64_t kProgressMilliseconds = 1'000;

}  // namespace

void EventDisplay::Update(const RunView& view, std::uint64_t nowMilliseconds) {
  if (view.phase != phase_) Write(lines_.Phase(view.phase));
  phase_ = view.phase;
  if (view.phase == "documents") rate_.Add(nowMilliseconds, view.documentsDone);
  if (lastProgress_ && nowMilliseconds - *lastProgress_ < kProgressMilliseconds) return;
  lastProgress_ = nowMilliseconds;
  Write(lines_.Progress(view, PaceOf(rate_, view)));
}

void EventDisplay::Error(std::string_view text) { errors_.Write(ErrorText(text)); }

void EventDisplay::Write(const std::string& line) {
  if (!isBroken_) isBroken_ = !output_.Write(line);
}

}  // namespace larkspan::console
