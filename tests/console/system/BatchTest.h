// The base of tests that export lists of databases with the real console program.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "console/text/Csv.h"
#include "tests/console/system/ExportTest.h"

namespace larkspan::console {

class BatchTest : public ExportTest {
 protected:
  // Writes the list, a line for each.
  void List(const std::vector<std::string>& lines) const;

  // "batch LIST --root ... --notes-ini ..." and these.
  Words BatchWords(const Words& more = {}) const;

  ConsoleEnd Batch(const Words& more = {}) const { return Run(BatchWords(more)); }

  // The rows of summary.csv by their path, each with its fields by their titles.
  using Row = std::map<std::string, std::string>;
  std::map<std::string, Row> Summary() const;

  // The word of each path: "whole", "losses", "failed".
  std::map<std::string, std::string> States() const;

  // The folder of a database of this machine.
  std::wstring FolderOf(const std::string& path) const;

  const std::wstring root_ = run_.folder() + L"\\Wurzel 根";
  const std::wstring list_ = run_.folder() + L"\\list.txt";
};

// Thirty databases: clean, damaged, crashing, hanging, locked and missing.
class ThirtyDatabasesTest : public BatchTest {
 protected:
  ThirtyDatabasesTest();

  static std::map<std::string, std::string> ExpectedStates();

  // With what bounds the one that hangs.
  ConsoleEnd BatchThirty(Words more) const;

  // Waits until so many exports have got their names.
  void AwaitPlaced(std::size_t count) const;

  // The paths whose exports have their names, with the bytes of outcome.json.
  std::map<std::string, std::string> Placed() const;
};

// The paths for which an event of this kind came.
std::multiset<std::string> PathsOf(const std::vector<Json>& events, const std::string& kind);

// How many exports were at work at once, at most; of those of one server when it is given.
std::size_t MostAtOnce(const std::vector<Json>& events, const std::string* server = nullptr);

}  // namespace larkspan::console
