#include "notes/DxlExporter.h"

#include "notes/AcquireHandle.h"

namespace larkspan {

Status CreateExporter(Exporter& exporter) {
  return AcquireHandle(exporter, notes_api::DXLCreateExporter);
}

Status SetExporterProperty(const Exporter& exporter, int property, std::int32_t value) {
  return Status(notes_api::DXLSetExporterProperty(exporter.get(), property, &value));
}

Status SetExporterTextProperty(const Exporter& exporter, int property, const char* value) {
  // The library's interface takes every value by plain pointer; a text it only reads.
  return Status(
      notes_api::DXLSetExporterProperty(exporter.get(), property, const_cast<char*>(value)));
}

Status ExportNoteDxl(const Exporter& exporter, notes_api::DxlOutputCallback output,
                     const Note& note, void* context) {
  return Status(notes_api::DXLExportNote(exporter.get(), output, note.get(), context));
}

Status ExportAclDxl(const Exporter& exporter, notes_api::DxlOutputCallback output,
                    const Database& database, void* context) {
  return Status(notes_api::DXLExportACL(exporter.get(), output, database.get(), context));
}

}  // namespace larkspan
