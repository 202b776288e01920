// One entry of a view as an XML element.
#pragma once

#include <tinyxml2.h>

#include "dxl/ViewColumns.h"
#include "dxl/ViewEntries.h"

namespace larkspan {

// Writes a `document`, `category`, `total` or `partial` element with one `value` element a column:
// the column's constant where it has one, else the entry's next value. A document whose values are
// used up still gets the constants that follow, any other entry ends there.
void WriteViewEntry(tinyxml2::XMLPrinter& printer, const ViewEntry& entry,
                    const ViewColumns& columns);

}  // namespace larkspan
