// What the tests of the listing modes stand on.
#pragma once

#include <string>

#include "tests/support/NotesFixture.h"

namespace larkspan {

// Gives each test a data folder for the library, which the mode under test starts by itself.
class ListingTest : public NotesFixture {
 protected:
  void SetServer(const std::wstring& server) {
    ChangeSettings([&](Settings& settings) { settings.server = server; });
  }

  // The library's configuration, with a fault plan that holds from its start.
  void ConfigureWithFaults(const std::string& plan) {
    WriteData(L"faults.json", plan);
    AddConfiguration("StandinFaults=faults.json");
    Configure();
  }

  // The words that follow "#ERROR# - " in the log's only line.
  std::string OnlyError() const {
    const Lines lines = LogLines();
    EXPECT_EQ(lines.size(), 1U);
    const std::string level = "#ERROR# - ";
    if (lines.empty() || !lines[0].starts_with(level)) return "no error";
    return lines[0].substr(level.size());
  }
};

}  // namespace larkspan
