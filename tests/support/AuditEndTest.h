// The base of tests of the audit report's closing block.
#pragma once

#include <ctime>
#include <string>

#include "supervision/AuditBlocks.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {

// Fills the output folder with what a run leaves, and reads the block that is then written.
class AuditEndTest : public OutputFolderTest {
 protected:
  void MakeFiles(const std::wstring& folder, int count) {
    MakeFolder(PathOf(folder));
    for (int i = 0; i < count; ++i) {
      WriteBytes(PathOf(folder + L"\\" + std::to_wstring(i) + L".dxl"), "");
    }
  }

  void SetLog(const std::string& bytes) { WriteBytes(PathOf(L"log.txt"), bytes); }

  void SetIdTable(const std::string& bytes) { WriteBytes(PathOf(L"idtable.txt"), bytes); }

  // The text behind "label: " in the closing block, or "absent".
  std::string EndedWith(const std::string& label) {
    WriteAuditEnd(std::time(nullptr), ProcessRunLog());
    for (const std::string& line : ReadLines(PathOf(L"audit.txt"))) {
      if (line.starts_with(label + ": ")) return line.substr(label.size() + 2);
    }
    return "absent";
  }

  std::string Listed() { return EndedWith("Database total documents "); }
  std::string Failed() { return EndedWith("Failed total documents   "); }
  std::string Warned() { return EndedWith("Documents exported with warnings "); }

  std::string LastLine() {
    WriteAuditEnd(std::time(nullptr), ProcessRunLog());
    return ReadLines(PathOf(L"audit.txt")).back();
  }
};

}  // namespace larkspan
