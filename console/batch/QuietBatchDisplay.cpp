#include "console/batch/QuietBatchDisplay.h"

#include "console/batch/BatchSentences.h"
#include "console/show/Sentences.h"

namespace larkspan::console {

void QuietBatchDisplay::Finish(const BatchEntry& entry) {
  if (entry.code != ExitCode::kWhole) Error(FinishSentence(entry));
}

void QuietBatchDisplay::Error(const std::string& text) { errors_.Write(ErrorText(text)); }

void QuietBatchDisplay::End(const BatchEnd& end) {
  if (end.code != ExitCode::kWhole) Error(BatchEndSentence(end));
}

}  // namespace larkspan::console
