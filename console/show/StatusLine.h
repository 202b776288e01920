// One line that tells where a run is, for a window of any width.
#pragma once

#include <string>

#include "console/show/RunView.h"
#include "console/show/StatusParts.h"

namespace larkspan::console {

struct StatusText {
  std::string text;
  int columns = 0;  // Of it; escape sequences take none.
};

// Never wider than the window less one column, since some terminals begin a new line behind the
// last one. In a narrow window the name of the database is cut in its middle, then parts are left
// out in the order of their importance.
StatusText StatusLine(const RunView& view, const Pace& pace, int width, bool colours);

}  // namespace larkspan::console
