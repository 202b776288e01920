// What the tests of the placement of exported files stand on.
#pragma once

#include <string>

#include "export/FilePlacement.h"
#include "tests/support/OneNoteFixture.h"
#include "tests/support/PauseRecorder.h"

namespace larkspan {

// Places the DXL of one note, which comes in chunks of 50 bytes.
class FilePlacementTest : public OneNoteFixture {
 protected:
  FilePlacementTest() : OneNoteFixture(50) {}

  Status ExportNote(const std::wstring& name = L"\\00000902.dxl") {
    return ExportNoteToFile(exporter_, note_, name);
  }

  // The lines of the first so many retries of an operation.
  static Lines RetryLines(const std::string& operation, int count) {
    Lines lines;
    for (int made = 1; made <= count; ++made) {
      lines.push_back("#DEBUG# - Retrying " + operation + ": " + std::to_string(made));
    }
    return lines;
  }

  static Lines DeleteRetries(int count) { return RetryLines("delete DXL temporary file", count); }
  static Lines MoveRetries(int count) { return RetryLines("move DXL file into place", count); }

  const std::wstring temporary_ = PathOf(L"temp.tmp");
  const std::wstring final_ = PathOf(L"00000902.dxl");
};

inline constexpr char kNotDeleted[] =
    "#WARNING# - Unable to delete DXL temporary file (tried retry)";
inline constexpr char kNotMoved[] = "#WARNING# - Unable to move DXL file into place (tried retry)";

inline Lines With(Lines lines, const std::string& last) {
  lines.push_back(last);
  return lines;
}

}  // namespace larkspan
