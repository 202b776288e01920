// The base of tests that run the program once and look at what it left behind.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/ClosingBlock.h"
#include "tests/support/DatabaseJson.h"
#include "tests/support/ExportRun.h"
#include "tests/support/Lines.h"

namespace larkspan::testing {

class SystemTest : public ::testing::Test {
 protected:
  // The lines of a file of the output folder; none when there is no such file.
  Lines OutputLines(const std::wstring& relativeName) const;
  Lines LogLines() const { return OutputLines(L"log.txt"); }

  // With the times masked.
  Lines AuditLines() const;

  // What the library recorded in a runtime that ended.
  nlohmann::json Ledger(std::size_t runtime) const;

  // How often the program called the entry point in that runtime.
  int Calls(std::size_t runtime, const std::string& entry) const;

  // The names of the exported notes of that subfolder, with slashes, in ascending order.
  Lines FilesIn(const std::string& subfolder) const;

  // The path of an entry of the output folder.
  std::wstring Path(const std::wstring& name) const { return run_.output() + L"\\" + name; }

  // Creates a file of the output folder and keeps every other program from opening or deleting it.
  UniqueSystemHandle Hold(const std::wstring& name) const;

  // Waits until the log holds the text; fails the test when it never does.
  void AwaitLogLine(const std::string& text) const;

  ExportRun run_;
};

bool Contains(const Lines& lines, const std::string& line);

// How many lines are exactly this one.
int CountLines(const Lines& lines, const std::string& line);

// The last lines of a list.
Lines Tail(const Lines& lines, std::size_t count);

// One list after another.
Lines Join(std::vector<Lines> parts);

}  // namespace larkspan::testing
