// The fixture of the stand-in library's tests: a data folder of the test's own, databases written
// as JSON text, and short forms of the calls that tests repeat. Everything goes through the entry
// points that programs use.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::notes_api {

// Programs look these two up by name, so the interface declares them for the library alone.
extern "C" {
STATUS LARKSPAN_NOTES_CALL NSFSearchExtended3(DHANDLE database, DHANDLE formula, DHANDLE filter,
                                              DWORD filterFlags, char* viewTitle, DWORD searchFlags,
                                              DWORD searchFlags1, DWORD searchFlags2,
                                              DWORD searchFlags3, DWORD searchFlags4,
                                              WORD classMask, TIMEDATE* since,
                                              SearchCallback callback, void* context,
                                              TIMEDATE* until, DHANDLE namesList);
STATUS LARKSPAN_NOTES_CALL NIFPurgeCollection(DHANDLE viewDatabase, DHANDLE dataDatabase,
                                              NOTEID view);
}  // extern "C"

}  // namespace larkspan::notes_api

namespace larkspan::standin_test {

using namespace larkspan::notes_api;

class StandinTest : public testing::Test {
 protected:
  StandinTest();
  ~StandinTest() override;

  // Writes a file of the data folder; folders on the way to it are made. The name is UTF-8.
  void WriteFile(const std::string& name, std::string_view text) const;
  std::string ReadFile(const std::string& name) const;

  // Starts the runtime with the data folder and these further lines of notes.ini.
  STATUS TryStart(const std::string& iniLines = "") const;
  void Start(const std::string& iniLines = "") const;

  // Writes a database, the first one as "test.nsf", and opens it; starts the runtime when that was
  // not done yet.
  DHANDLE OpenDatabase(std::string_view json);

  // Opens a note of the last database.
  DHANDLE OpenNote(NOTEID id) const;

  // Starts with the sample data folder of the repository.
  static void StartWithSamples();

  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
  DHANDLE database_ = 0;
};

// A database of one document with the ID 2314 (hexadecimal 90A) and these items, in JSON.
std::string DocumentWith(const std::string& items);
inline constexpr NOTEID kDocument = 0x90A;

std::string ToNotes(std::u16string_view text);
std::string ToNotes(std::string_view utf8);
std::string ToUtf8(std::string_view notes);

// One exporter, made and configured and thrown away, and what it wrote.
struct Exported {
  STATUS status = 0;
  std::string dxl;
  std::vector<std::size_t> chunks;
};

struct Property {
  int number;
  std::uint32_t value;
};

Exported Export(DHANDLE note, const std::vector<Property>& properties = {});

// A finished name list for an open with full access.
DHANDLE MakeNamesList(const std::string& name, DWORD authentication);

// What the ledger holds of the arguments of an entry point.
nlohmann::json RecordedArguments(const std::string& entry);

}  // namespace larkspan::standin_test

// The statement ends the process because the library refuses to go on, with this message.
#define EXPECT_STRICT(statement, message) \
  EXPECT_EXIT((void)(statement), testing::ExitedWithCode(70), message)
