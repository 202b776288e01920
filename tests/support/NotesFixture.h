// The base of tests whose subject works with the Notes library: the stand-in library runs in this
// process over databases that a test writes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "notes/Handles.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/TempFolder.h"

namespace larkspan {

// Gives each test a data folder of its own beside the output folder. At the end of a test nothing
// may be open in the library: whatever is fails the test, and then the runtime is ended.
class NotesFixture : public OutputFolderTest {
 protected:
  NotesFixture();
  ~NotesFixture() override;

  // Writes a file of the data folder.
  void WriteData(const std::wstring& name, std::string_view bytes) const;

  // Writes "test.nsf", a database in JSON.
  void WriteDatabase(std::string_view json) const { WriteData(L"test.nsf", json); }

  // Adds a line to the library's configuration. To be called before the runtime is started.
  void AddConfiguration(const std::string& line);

  // Writes the configuration, which the settings name from here on.
  void Configure();

  // Configures and starts the runtime.
  void Start();

  // Opens "test.nsf" or one of its notes; throws when that fails.
  static Database OpenTestDatabase();
  static Note OpenTestNote(const Database& database, std::uint32_t noteId);

  // Sets the fault plan, an array in JSON, which counts calls from now on.
  static void SetFaults(const std::string& plan);

  // From the ledger of the runtime that runs or ended last: how often an entry point was called,
  // what was recorded of its arguments (JSON without blanks, empty when nothing was), and the
  // first calls in their order, those of the named entry points only.
  static int Calls(const std::string& entry);
  static std::string Arguments(const std::string& entry);
  static std::vector<std::string> Order(const std::vector<std::string>& entries);

  // What is open in the library: a JSON object of the kinds that are, without blanks.
  static std::string LeftOpen();

 private:
  TempFolder dataFolder_;
  std::wstring previousFolder_;
  std::string configuration_;
};

inline constexpr char kNothingOpen[] = "{}";

}  // namespace larkspan
