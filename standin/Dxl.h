// The DXL that the exporters write. Lines end with a line feed. A comment after the document type
// shows the exporter's settings, so that a reader of a file sees which exporter wrote it.
#pragma once

#include <string>

#include "standin/Database.h"
#include "standin/Exporter.h"
#include "standin/OpenNote.h"

namespace larkspan::standin {

std::string NoteDxl(const Exporter& exporter, const DatabaseProperties& database,
                    const OpenNote& note);

std::string AclDxl(const Exporter& exporter, const DatabaseProperties& database);

}  // namespace larkspan::standin
