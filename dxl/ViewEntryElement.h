// One entry of a view as an XML element.
#pragma once

#include <tinyxml2.h>

#include "dxl/ViewColumns.h"
#include "dxl/ViewEntries.h"
#include "notes/NotesApi.h"

namespace larkspan {

// What all entries of a view are written by.
struct ViewLayout {
  ViewColumns columns;
  notes_api::IntlSettings numbers{};  // The conventions by which numbers are written.
};

// Writes a `document`, `category`, `total` or `partial` element with one `value` element a column:
// the column's constant where it has one, else the entry's next value. A document whose values are
// used up still gets the constants that follow, any other entry ends there.
void WriteViewEntry(tinyxml2::XMLPrinter& printer, const ViewEntry& entry,
                    const ViewLayout& layout);

}  // namespace larkspan
