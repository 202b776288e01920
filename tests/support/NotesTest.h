// The base of tests whose subject asks the Notes library.
#pragma once

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "notes/Database.h"
#include "notes/Runtime.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/TempFolder.h"

namespace larkspan {

// Runs the library over a data folder of the test's own. Every handle that a test takes is closed
// before the test ends.
class NotesTest : public OutputFolderTest {
 protected:
  NotesTest() {
    WriteBytes(data_ / L"\\notes.ini", "[Notes]\nDirectory=.\n");
    Settings settings = ProcessSettings();
    settings.programPath = L"larkspan.exe";
    settings.runtimeArguments = {L"=" + data_ / L"\\notes.ini"};
    SetProcessSettings(settings);
    if (!StartNotesRuntime().ok()) throw std::runtime_error("the Notes runtime does not start");
  }
  ~NotesTest() override { EndNotesRuntime(); }

  // Makes a database from its text and opens it.
  Database MakeDatabase(std::string_view json) {
    WriteBytes(data_ / L"\\test.nsf", json);
    Database database;
    EXPECT_TRUE(OpenDatabase("test.nsf", database).ok());
    return database;
  }

 private:
  // The name of the configuration file reaches the library in an 8-bit character set.
  TempFolder data_{L"larkspan-notes"};
};

}  // namespace larkspan
