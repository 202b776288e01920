// The list of views is taken before the first is written. A stop is noticed between two views,
// never within one.
#include "dxl/ViewExport.h"

#include <cstdint>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "dxl/NumberSettings.h"
#include "dxl/ViewDocument.h"
#include "notes/IdTables.h"
#include "notes/NoteSearch.h"
#include "report/Progress.h"

namespace larkspan {

namespace {

// Views and folders alike.
constexpr std::uint16_t kViewClass = 0x0008;

}  // namespace

void ExportViews(const Database& database) {
  const notes_api::IntlSettings numbers = GetNumberSettings();
  IdTable views;
  if (!ListNotesOfClass(database, kViewClass, views).ok()) return;
  Progress(L"VIEWCOUNT: %d", static_cast<int>(CountIds(views)));
  ScanIds(views, [&](std::uint32_t viewId) {
    if (Progress(L"VIEW: %08X", viewId)) return false;
    WriteViewDocument(database, viewId, numbers, InOutputFolder(output::ViewFile(viewId)));
    return true;
  });
}

}  // namespace larkspan
