#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/ReplacedEntryPoint.h"
#include "tests/unit/export/NoteLoopTest.h"

namespace larkspan {
namespace {

using notes_api::BOOL;
using notes_api::DHANDLE;
using notes_api::DWORD;
using notes_api::DxlOutputCallback;
using notes_api::HKFC;
using notes_api::NOTEID;
using notes_api::STATUS;
using notes_api::WORD;

// Each call of the library with the state of the output folder at that time.
Lines trace;
std::function<std::string()> state;

void Record(const std::string& call) { trace.push_back(call + ": " + state()); }

STATUS LARKSPAN_NOTES_CALL RecordOpen(DHANDLE database, NOTEID noteId, WORD flags, DHANDLE* note) {
  Record("open");
  return Original("NSFNoteOpen", notes_api::NSFNoteOpen)(database, noteId, flags, note);
}

BOOL LARKSPAN_NOTES_CALL RecordSealed(DHANDLE note, BOOL* isSigned, BOOL* isSealed) {
  Record("sealed");
  return Original("NSFNoteIsSignedOrSealed", notes_api::NSFNoteIsSignedOrSealed)(note, isSigned,
                                                                                 isSealed);
}

STATUS LARKSPAN_NOTES_CALL RecordDecrypt(DHANDLE note, HKFC keyFile, DWORD options, DHANDLE* key,
                                         DWORD reserved1, void* reserved2) {
  Record("decrypt");
  return Original("NSFNoteCipherDecrypt", notes_api::NSFNoteCipherDecrypt)(
      note, keyFile, options, key, reserved1, reserved2);
}

STATUS LARKSPAN_NOTES_CALL RecordExport(DHANDLE exporter, DxlOutputCallback output, DHANDLE note,
                                        void* context) {
  Record("export");
  return Original("DXLExportNote", notes_api::DXLExportNote)(exporter, output, note, context);
}

STATUS LARKSPAN_NOTES_CALL RecordClose(DHANDLE note) {
  Record("close");
  return Original("NSFNoteClose", notes_api::NSFNoteClose)(note);
}

// The text of a status is asked for where a failure is logged.
WORD LARKSPAN_NOTES_CALL RecordStatusText(DHANDLE module, STATUS code, char* out, WORD size) {
  Record("log");
  return Original("OSLoadString", notes_api::OSLoadString)(module, code, out, size);
}

class NoteLoopOrderTest : public NoteLoopTest {
 protected:
  // Walks the notes and returns the calls of the library, each with the state at its time: the
  // note ID in the marker file, and the numbers of progress and index lines.
  Lines Traced(const std::vector<std::uint32_t>& noteIds) {
    for (const std::uint32_t noteId : noteIds) EXPECT_TRUE(InsertId(table_, noteId).ok());
    const ReplacedEntryPoint open("NSFNoteOpen", RecordOpen);
    const ReplacedEntryPoint sealed("NSFNoteIsSignedOrSealed", RecordSealed);
    const ReplacedEntryPoint decrypt("NSFNoteCipherDecrypt", RecordDecrypt);
    const ReplacedEntryPoint exporting("DXLExportNote", RecordExport);
    const ReplacedEntryPoint close("NSFNoteClose", RecordClose);
    const ReplacedEntryPoint statusText("OSLoadString", RecordStatusText);
    const CapturedOutput output;
    trace.clear();
    state = [&] {
      const std::string marker = HasMarker() ? ReadBytes(PathOf(L"marker.txt")).substr(0, 8) : "no";
      return marker + " marker, " + std::to_string(CountLines(output.Flushed())) + " progress, " +
             std::to_string(IndexLines()) + " indexed";
    };
    ExportListedNotes(exporters_, database_, table_, 0);
    return trace;
  }

 private:
  static long long CountLines(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
  }

  std::size_t IndexLines() const {
    const std::wstring index = PathOf(L"unidindex.txt");
    return Exists(index) ? ReadLines(index).size() : 0;
  }
};

TEST_F(NoteLoopOrderTest, MarkerAndProgressComeFirstAndTheMarkerStaysUntilTheClose) {
  EXPECT_EQ(Traced({0x902, 0x906}), (Lines{"open: 00000902 marker, 1 progress, 0 indexed",
                                           "sealed: 00000902 marker, 1 progress, 1 indexed",
                                           "export: 00000902 marker, 1 progress, 1 indexed",
                                           "close: 00000902 marker, 1 progress, 1 indexed",
                                           "open: 00000906 marker, 2 progress, 1 indexed",
                                           "sealed: 00000906 marker, 2 progress, 2 indexed",
                                           "export: 00000906 marker, 2 progress, 2 indexed",
                                           "close: 00000906 marker, 2 progress, 2 indexed"}));
}

TEST_F(NoteLoopOrderTest, DecryptionIsBehindTheIndexAndBeforeTheExport) {
  SetId(L"imke.id", L"Rittersporn");
  EXPECT_EQ(Traced({0x90A}), (Lines{"open: 0000090A marker, 1 progress, 0 indexed",
                                    "sealed: 0000090A marker, 1 progress, 1 indexed",
                                    "decrypt: 0000090A marker, 1 progress, 1 indexed",
                                    "export: 0000090A marker, 1 progress, 1 indexed",
                                    "close: 0000090A marker, 1 progress, 1 indexed"}));
}

TEST_F(NoteLoopOrderTest, ExportThatFailsIsLoggedWhenTheNoteIsClosedAndTheMarkerGone) {
  SetFaults(R"([{"entry": "DXLExportNote", "status": 1000}])");
  const Lines traced = Traced({0x902});
  EXPECT_EQ(Lines(traced.end() - 2, traced.end()),
            (Lines{"close: 00000902 marker, 1 progress, 1 indexed",
                   "log: no marker, 1 progress, 1 indexed"}));
}

TEST_F(NoteLoopOrderTest, OpenThatFailsIsLoggedBeforeTheMarkerIsDeleted) {
  EXPECT_EQ(Traced({0xFFE}), (Lines{"open: 00000FFE marker, 1 progress, 0 indexed",
                                    "log: 00000FFE marker, 1 progress, 0 indexed"}));
}

TEST_F(NoteLoopOrderTest, DecryptionThatFailsIsLoggedBeforeTheNoteIsClosed) {
  const Lines traced = Traced({0x90A});
  EXPECT_EQ(traced[2], "log: 0000090A marker, 1 progress, 1 indexed");
  EXPECT_TRUE(traced[3].starts_with("close:"));
}

TEST_F(NoteLoopOrderTest, MarkerIsDeletedBeforeANoteIsClosedThatCouldNotBeDecrypted) {
  EXPECT_EQ(Traced({0x90A})[3], "close: no marker, 1 progress, 1 indexed");
}

}  // namespace
}  // namespace larkspan
