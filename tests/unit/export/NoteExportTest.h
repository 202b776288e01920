// What the tests of the export of one note stand on.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>

#include "export/ExporterSet.h"
#include "export/NoteExport.h"
#include "export/OutputFolder.h"
#include "tests/support/FileBytes.h"
#include "tests/support/NotesFixture.h"

namespace larkspan {

inline constexpr std::uint32_t kNoteId = 0x90A;

// Each test exports the one note of a database, in archive mode unless it says otherwise.
class NoteExportTest : public NotesFixture {
 protected:
  NoteExportTest() { SetArchive(true); }

  // Opens a note of this class (JSON: a name or a number) with these items.
  void OpenNoteOf(const std::string& noteClass, const std::string& items) {
    WriteDatabase(R"({"notes": [{"id": "0000090A", "class": )" + noteClass + ", \"items\": [" +
                  items + "]}]}");
    Start();
    database_ = OpenTestDatabase();
    note_ = OpenTestNote(database_, kNoteId);
    CreateOutputSubfolders();
    EXPECT_TRUE(CreateExporters(exporters_));
  }

  Status Export() { return ExportNote(exporters_, note_, kNoteId); }

  // Lets the exporter with this ordinal (normal 1, no convert 2, no images 3, no images no convert
  // 4, raw 5) fail its call with this number; call 0 stands for all of them.
  static std::string Failing(int exporter, int status, int call = 0) {
    const std::string calls = call == 0 ? "" : "\"call\": " + std::to_string(call) + ", ";
    return R"({"entry": "DXLExportNote", "exporter": )" + std::to_string(exporter) + ", " + calls +
           "\"status\": " + std::to_string(status) + "}";
  }

  // The files of the output folder but the log, in alphabetical order.
  Lines Files() const {
    Lines names;
    const std::filesystem::path root(ProcessSettings().outputFolder);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
      const std::string name = entry.path().lexically_relative(root).generic_string();
      if (!entry.is_directory() && name != "log.txt") names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  // Those that the export of a note of this class with these items leaves.
  Lines FilesFor(const std::string& noteClass, const std::string& items) {
    OpenNoteOf(noteClass, items);
    EXPECT_TRUE(Export().ok());
    return Files();
  }

  // The number of the exporter that wrote the file.
  int ExporterOf(const std::wstring& name) const {
    const std::string dxl = ReadBytes(PathOf(name));
    const std::string words = "<!-- exporter ";
    return std::stoi(dxl.substr(dxl.find(words) + words.size()));
  }

  bool FileHasItem(const std::wstring& name, const std::string& item) const {
    return ReadBytes(PathOf(name)).find("<item name='" + item + "'") != std::string::npos;
  }

  Database database_;
  Note note_;
  ExporterSet exporters_;
};

}  // namespace larkspan
