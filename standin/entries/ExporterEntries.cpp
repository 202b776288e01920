// Entry points for DXL exporters.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Dxl.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

// Hands the text over piece by piece, each from memory of its own that is gone afterwards.
STATUS Deliver(Call& call, const std::string& dxl, std::uint32_t chunkBytes,
               DxlOutputCallback output, void* context) {
  STATUS status = call.AfterPieces(0, dxl.empty());
  std::uint32_t delivered = 0;
  for (std::size_t done = 0; status == kSuccess && done < dxl.size(); done += chunkBytes) {
    const std::string chunk = dxl.substr(done, chunkBytes);
    output(reinterpret_cast<const BYTE*>(chunk.data()), static_cast<DWORD>(chunk.size()), context);
    status = call.AfterPieces(++delivered, done + chunkBytes >= dxl.size());
  }
  return status;
}

nlohmann::json RecordedProperty(const Exporter& exporter, int property) {
  const auto number = exporter.numbers.find(property);
  if (IsTextProperty(property)) return {exporter.ordinal, property, exporter.pictureText};
  if (number == exporter.numbers.end()) return {exporter.ordinal, property, nullptr};
  return {exporter.ordinal, property, number->second};
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL DXLCreateExporter(DHANDLE* exporter) {
  const Call call("DXLCreateExporter", {.exporterOrdinal = TheRuntime().exportersCreated + 1});
  if (call.stops()) return call.status();
  Require(exporter != nullptr, "there is no place for the handle");
  Runtime& runtime = call.runtime();
  auto created = std::make_unique<Exporter>();
  created->ordinal = ++runtime.exportersCreated;
  *exporter = runtime.exporters.Add(std::move(created));
  return kSuccess;
}

void LARKSPAN_NOTES_CALL DXLDeleteExporter(DHANDLE exporter) {
  const Call call("DXLDeleteExporter", {.exporter = exporter});
  if (call.stops()) return;
  call.runtime().exporters.Remove(exporter);
}

STATUS LARKSPAN_NOTES_CALL DXLSetExporterProperty(DHANDLE exporter, int property, void* value) {
  const Call call("DXLSetExporterProperty", {.exporter = exporter});
  if (call.stops()) return call.status();
  Exporter& opened = call.runtime().exporters.Get(exporter);
  Require(value != nullptr, "the value is missing");
  const STATUS status = opened.SetProperty(property, value);
  call.runtime().ledger.RecordNext("DXLSetExporterProperty", RecordedProperty(opened, property));
  return status;
}

STATUS LARKSPAN_NOTES_CALL DXLExportNote(DHANDLE exporter, DxlOutputCallback output, DHANDLE note,
                                         void* context) {
  Call call("DXLExportNote", {.note = note, .exporter = exporter});
  if (call.stops()) return call.status();
  Require(output != nullptr, "there is no callback");
  Runtime& runtime = call.runtime();
  const Exporter& used = runtime.exporters.Get(exporter);
  const OpenNote& opened = runtime.notes.Get(note);
  const DatabaseProperties& database = runtime.DatabaseOf(opened.database).properties();
  return Deliver(call, NoteDxl(used, database, opened), database.chunkBytes, output, context);
}

STATUS LARKSPAN_NOTES_CALL DXLExportACL(DHANDLE exporter, DxlOutputCallback output,
                                        DHANDLE database, void* context) {
  Call call("DXLExportACL", {.exporter = exporter});
  if (call.stops()) return call.status();
  Require(output != nullptr, "there is no callback");
  Runtime& runtime = call.runtime();
  const Exporter& used = runtime.exporters.Get(exporter);
  const DatabaseProperties& properties = runtime.DatabaseOf(database).properties();
  return Deliver(call, AclDxl(used, properties), properties.chunkBytes, output, context);
}

}  // namespace larkspan::notes_api
