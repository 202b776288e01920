// What a person is told of a batch, as sentences without a line end.
#pragma once

#include <string>

#include "console/batch/BatchDisplay.h"

namespace larkspan::console {

// "Not all could run": how a batch came out.
std::string OutsetOfAll(ExitCode code);

std::string BatchStartSentence(const BatchStart& start, const BatchCounts& counts);

// "Whole: Mill/Example!!orders.nsf, 1,234 of 1,234 notes in 2 min".
std::string FinishSentence(const BatchEntry& entry);

std::string BatchStopSentence(const std::string& by);

// "12 of 30 databases done: 9 whole, 2 with losses, 1 failed".
std::string BatchCountsText(const BatchCounts& counts);

// Two lines and, where something went wrong, one more.
std::string BatchEndSentence(const BatchEnd& end);

}  // namespace larkspan::console
