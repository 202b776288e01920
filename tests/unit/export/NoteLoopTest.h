// What the tests of the walk over the listed notes stand on.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "export/ExporterSet.h"
#include "export/NoteLoop.h"
#include "export/OutputFolder.h"
#include "notes/IdTables.h"
#include "report/Progress.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {

// Documents 902, 906 and 80000002, and 90A, which is sealed for Imke. Each test walks an archive,
// unless it says otherwise.
class NoteLoopTest : public NotesFixture {
 protected:
  NoteLoopTest() {
    ClearStopRequestForTesting();
    SetArchive(true);
    WriteDatabase(R"({"notes": [{"id": "00000902"}, {"id": "00000906"}, {"id": "80000002"},
      {"id": "0000090A", "sealedFor": ["CN=Imke"],
       "items": [{"name": "Secret", "text": "4711", "sealed": true}]}]})");
    WriteData(L"imke.id", R"({"name": "CN=Imke", "password": "Rittersporn"})");
    Start();
    CreateOutputSubfolders();
    database_ = OpenTestDatabase();
    EXPECT_TRUE(CreateExporters(exporters_));
    EXPECT_TRUE(CreateIdTable(table_).ok());
  }
  ~NoteLoopTest() override { ClearStopRequestForTesting(); }

  static void SetId(const std::wstring& idFile, const std::wstring& password) {
    ChangeSettings([&](Settings& settings) {
      settings.idFile = idFile;
      settings.idPassword = password;
    });
  }

  // Walks these notes; what the walk writes to standard output is kept.
  bool Walk(const std::vector<std::uint32_t>& noteIds, std::uint32_t resumeNoteId = 0) {
    for (const std::uint32_t noteId : noteIds) EXPECT_TRUE(InsertId(table_, noteId).ok());
    const CapturedOutput output;
    const bool reachedEnd = ExportListedNotes(exporters_, database_, table_, resumeNoteId);
    progress_ = output.Flushed();
    return reachedEnd;
  }

  bool HasData(const std::wstring& noteId) const {
    return Exists(PathOf(L"data\\" + noteId + L".dxl"));
  }

  bool HasMarker() const { return Exists(PathOf(L"marker.txt")); }

  Database database_;
  ExporterSet exporters_;
  IdTable table_;
  std::string progress_;
};

}  // namespace larkspan
