// The five DXL exporters of a worker, created and configured once.
#pragma once

#include "notes/Handles.h"

namespace larkspan {

// The exporters in the order of their creation; they are deleted in the reverse order.
struct ExporterSet {
  Exporter normal;
  Exporter noConvert;
  Exporter noImages;
  Exporter noImagesNoConvert;
  Exporter raw;
};

// Creates the exporters and configures each right after its creation. On failure logs which one
// could not be created and returns false; those already created are deleted with the set.
bool CreateExporters(ExporterSet& exporters);

}  // namespace larkspan
