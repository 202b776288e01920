#include "dxl/ViewExport.h"

#include <cstdint>

#include "app/Settings.h"
#include "base/OutputPaths.h"
#include "dxl/NumberSettings.h"
#include "dxl/ViewDocument.h"
#include "notes/Collections.h"
#include "notes/IdTables.h"
#include "report/Progress.h"

namespace larkspan {

namespace {

// Views and folders alike.
constexpr std::uint16_t kViewClass = 0x0008;

}  // namespace

void ExportViews(const LibraryFunctions& functions, const Database& database) {
  FetchNumberSettings();
  IdTable views;
  if (!ListNotesOfClass(database, kViewClass, views).ok()) return;
  Progress(L"VIEWCOUNT: %d", static_cast<int>(CountIds(views)));
  ScanIds(views, [&](std::uint32_t viewId) {
    if (Progress(L"VIEW: %08X", viewId)) return false;
    WriteViewDocument(functions, database, viewId, InOutputFolder(output::ViewFile(viewId)));
    return true;
  });
}

}  // namespace larkspan
