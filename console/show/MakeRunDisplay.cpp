#include "console/show/MakeRunDisplay.h"

#include "console/show/EventDisplay.h"
#include "console/show/Output.h"
#include "console/show/PersonDisplay.h"
#include "console/show/QuietDisplay.h"

namespace larkspan::console {

std::unique_ptr<RunDisplay> MakeRunDisplay(DisplayMode mode) {
  // The streams of the program last as long as it does.
  static Output output(STD_OUTPUT_HANDLE);
  static Output errors(STD_ERROR_HANDLE);
  return MakeRunDisplay(mode, output, errors);
}

std::unique_ptr<RunDisplay> MakeRunDisplay(DisplayMode mode, LineSink& output, LineSink& errors) {
  switch (mode) {
    case DisplayMode::kJson:
      return std::make_unique<EventDisplay>(output, errors);
    case DisplayMode::kQuiet:
      return std::make_unique<QuietDisplay>(errors);
    case DisplayMode::kTerminalOrPlain:
      break;
  }
  return std::make_unique<PersonDisplay>(output, errors);
}

}  // namespace larkspan::console
