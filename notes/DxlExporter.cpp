// The context of a callback begins with the output's name, as whoever looks at it expects; what the
// callback itself needs stands behind.
#include "notes/DxlExporter.h"

#include <array>
#include <exception>
#include <type_traits>

namespace larkspan {

namespace {

struct Visit {
  const DxlVisitor& visit;
  std::exception_ptr exception;
};

// The context of an export, which begins with the output's name in UTF-16.
struct OutputContext {
  std::array<wchar_t, kMaxOutputName + 1> name{};
  Visit* visit = nullptr;
};
static_assert(std::is_standard_layout_v<OutputContext>);

// The library's code stands between this function and its caller, so an exception is handed over.
extern "C" void LARKSPAN_NOTES_CALL HandOverChunk(const notes_api::BYTE* buffer,
                                                  notes_api::DWORD length, void* context) {
  Visit& visit = *static_cast<OutputContext*>(context)->visit;
  if (visit.exception) return;
  try {
    visit.visit({reinterpret_cast<const char*>(buffer), length});
  } catch (...) {
    visit.exception = std::current_exception();
  }
}

// Gives the context of the visitor to an operation that returns a status.
template <typename Operation>
Status RunExport(std::wstring_view outputName, const DxlVisitor& visitor, Operation operation) {
  Visit visit{visitor, nullptr};
  OutputContext context;
  outputName.copy(context.name.data(), kMaxOutputName);
  context.visit = &visit;
  const Status status(operation(&context));
  if (visit.exception) std::rethrow_exception(visit.exception);
  return status;
}

}  // namespace

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

Status ExportNoteDxl(const Exporter& exporter, const Note& note, std::wstring_view outputName,
                     const DxlVisitor& visit) {
  return RunExport(outputName, visit, [&](void* context) {
    return notes_api::DXLExportNote(exporter.get(), HandOverChunk, note.get(), context);
  });
}

Status ExportAclDxl(const Exporter& exporter, const Database& database,
                    std::wstring_view outputName, const DxlVisitor& visit) {
  return RunExport(outputName, visit, [&](void* context) {
    return notes_api::DXLExportACL(exporter.get(), HandOverChunk, database.get(), context);
  });
}

}  // namespace larkspan
