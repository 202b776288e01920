// The Notes library's DXL exporters.
#pragma once

#include <cstdint>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

Status CreateExporter(Exporter& exporter);

// Sets a property whose value is a 32-bit integer (a switch is 0 or 1).
Status SetExporterProperty(const Exporter& exporter, int property, std::int32_t value);

// Sets a property whose value is a text.
Status SetExporterTextProperty(const Exporter& exporter, int property, const char* value);

// The export operations hand the DXL to the callback, chunk by chunk, with the context.
Status ExportNoteDxl(const Exporter& exporter, notes_api::DxlOutputCallback output,
                     const Note& note, void* context);
Status ExportAclDxl(const Exporter& exporter, notes_api::DxlOutputCallback output,
                    const Database& database, void* context);

}  // namespace larkspan
