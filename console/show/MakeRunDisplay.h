// The forms in which a run can be shown.
#pragma once

#include <memory>

#include "console/show/LineSink.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

enum class DisplayMode {
  kTerminalOrPlain,  // On a terminal a status line that is drawn again and again, with lines above
                     // it for what happens; elsewhere a plain line every ten seconds and those.
  kJson,             // Events on standard output, one JSON object a line, and nothing else there.
  kQuiet,            // Nothing, but on standard error what went wrong.
};

// On the program's own standard output and standard error.
std::unique_ptr<RunDisplay> MakeRunDisplay(DisplayMode mode);

// On these, which outlive it.
std::unique_ptr<RunDisplay> MakeRunDisplay(DisplayMode mode, LineSink& output, LineSink& errors);

}  // namespace larkspan::console
