// The Notes library's DXL exporters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

Status CreateExporter(Exporter& exporter);

// Sets a property whose value is a 32-bit integer (a switch is 0 or 1).
Status SetExporterProperty(const Exporter& exporter, int property, std::int32_t value);

// Sets a property whose value is a text.
Status SetExporterTextProperty(const Exporter& exporter, int property, const char* value);

// Takes a chunk of DXL, which stays only as long as the visitor runs.
using DxlVisitor = std::function<void(std::string_view chunk)>;

// The export operations hand the DXL to the visitor, chunk by chunk. The library passes the name
// of the output, of at most kMaxOutputName characters, along with each. After an exception of the
// visitor no further chunk is handed over, and it comes out of here when the export has ended.
inline constexpr std::size_t kMaxOutputName = 15;
Status ExportNoteDxl(const Exporter& exporter, const Note& note, std::wstring_view outputName,
                     const DxlVisitor& visit);
Status ExportAclDxl(const Exporter& exporter, const Database& database,
                    std::wstring_view outputName, const DxlVisitor& visit);

}  // namespace larkspan
