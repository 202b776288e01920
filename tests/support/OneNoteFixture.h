// The base of tests of the DXL of one note.
#pragma once

#include <string>

#include "notes/DxlExporter.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {

// Has a database with one note, 00000902, both open, and an exporter that gives DXL in chunks of so
// many bytes.
class OneNoteFixture : public NotesFixture {
 protected:
  explicit OneNoteFixture(int chunkBytes) {
    WriteDatabase(R"({"chunkBytes": )" + std::to_string(chunkBytes) +
                  R"(, "notes": [{"id": "00000902"}]})");
    Start();
    database_ = OpenTestDatabase();
    note_ = OpenTestNote(database_, 0x902);
    EXPECT_TRUE(CreateExporter(exporter_).ok());
  }

  Database database_;
  Note note_;
  Exporter exporter_;
};

}  // namespace larkspan
