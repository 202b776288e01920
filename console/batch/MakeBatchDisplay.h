// The forms in which a batch can be shown are those of an export.
#pragma once

#include <memory>

#include "console/batch/BatchDisplay.h"
#include "console/show/LineSink.h"
#include "console/show/MakeRunDisplay.h"

namespace larkspan::console {

// On these, which outlive it.
std::unique_ptr<BatchDisplay> MakeBatchDisplay(DisplayMode mode, LineSink& output,
                                               LineSink& errors);

}  // namespace larkspan::console
