#include "console/batch/MakeBatchDisplay.h"

#include "console/batch/EventBatchDisplay.h"
#include "console/batch/PersonBatchDisplay.h"
#include "console/batch/QuietBatchDisplay.h"

namespace larkspan::console {

std::unique_ptr<BatchDisplay> MakeBatchDisplay(DisplayMode mode, LineSink& output,
                                               LineSink& errors) {
  switch (mode) {
    case DisplayMode::kJson:
      return std::make_unique<EventBatchDisplay>(output, errors);
    case DisplayMode::kQuiet:
      return std::make_unique<QuietBatchDisplay>(errors);
    case DisplayMode::kTerminalOrPlain:
      break;
  }
  return std::make_unique<PersonBatchDisplay>(output, errors);
}

}  // namespace larkspan::console
