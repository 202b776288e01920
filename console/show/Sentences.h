// What a person is told at the turning points of a run, as sentences without a line end.
#pragma once

#include <string>
#include <string_view>

#include "console/show/Event.h"

namespace larkspan::console {

// "Done with losses": how something came out.
std::string OutsetOf(ExitCode code);

std::string StartSentence(const StartEvent& start);
std::string RestartSentence(const RestartEvent& restart);
std::string LossSentence(const Loss& loss);
std::string StopSentence(const std::string& by);
std::string RetrySentence(const RetryEvent& retry);
std::string ReadySentence(const ReadyEvent& ready);
std::string EndSentence(const EndEvent& end);

// The line of standard error, with its end.
std::string ErrorText(std::string_view text);

}  // namespace larkspan::console
