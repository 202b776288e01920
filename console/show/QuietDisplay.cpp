#include "console/show/QuietDisplay.h"

#include "console/show/Sentences.h"

namespace larkspan::console {

void QuietDisplay::End(const EndEvent& end) {
  if (end.exitCode != ExitCode::kWhole) Error(EndSentence(end));
}

void QuietDisplay::Error(std::string_view text) { errors_.Write(ErrorText(text)); }

}  // namespace larkspan::console
