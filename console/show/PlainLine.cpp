#include "console/show/PlainLine.h"

#include "console/text/Sizes.h"

namespace larkspan::console {

std::string PlainLine(const RunView& view, const Pace& pace) {
  std::string line = ClockText(view.elapsed / 1000);
  for (const StatusPart& part : StatusParts(view, pace)) line += "  " + part.text;
  return line;
}

}  // namespace larkspan::console
