// The base of tests that export with the real console program and look at what it said and left.
#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/console/system/ConsoleRun.h"
#include "tests/support/DatabaseJson.h"
#include "tests/support/FileBytes.h"

namespace larkspan::console {

using Json = nlohmann::json;
using Words = std::vector<std::wstring>;

// For --stall: a worker that hangs is ended soon, and one that only has to wait for its turn on a
// busy machine is not.
inline constexpr const wchar_t* kShortStall = L"5s";

class ExportTest : public ::testing::Test {
 protected:
  // "export --path x.nsf --out ... --notes-ini ..." and these.
  Words ExportWords(const Words& more = {}) const;

  // The program with exactly these arguments.
  ConsoleEnd Run(const Words& arguments) const;

  ConsoleEnd Export(const Words& more = {}) const { return Run(ExportWords(more)); }

  // A program that goes on while the test looks at it.
  std::unique_ptr<ConsoleProcess> Start(const Words& arguments) const;
  std::unique_ptr<ConsoleProcess> StartExport(const Words& more = {}) const {
    return Start(ExportWords(more));
  }

  // outcome.json of the folder, parsed; it must be there.
  Json Outcome() const { return OutcomeOf(out_); }
  static Json OutcomeOf(const std::wstring& folder);

  // Waits until outcome.json is there and fulfils the condition.
  void AwaitOutcome(const std::wstring& folder,
                    const std::function<bool(const Json& outcome)>& condition) const;

  // Waits until the file is there. It is not opened.
  void AwaitFile(const std::wstring& path) const;

  // Names of the files of a subfolder, ascending: "data/00000902.dxl".
  Lines FilesIn(const std::string& subfolder) const;

  // The tree without what tells of times and of the console's own run.
  testing::OutputTree NotesTree() const { return NotesTreeOf(out_); }
  static testing::OutputTree NotesTreeOf(const std::wstring& folder);

  std::string Log() const { return ReadIfThere(L"log.txt"); }
  std::string ReadIfThere(const std::wstring& name) const;

  // What an undisturbed export of this database writes.
  testing::OutputTree CleanTree(const std::string& database) const;

  testing::ExportRun run_;
  std::wstring database_ = L"x.nsf";
  std::wstring out_ = run_.folder() + L"\\Ausgabe 出力";
  std::wstring programFolder_ = testing::ProgramFolder();
};

// The events of --json, parsed.
std::vector<Json> EventsIn(const std::string& output);

// Of those the ones of that kind.
std::vector<Json> EventsOf(const std::string& output, const std::string& kind);

bool Holds(const std::string& text, const std::string& part);

}  // namespace larkspan::console
