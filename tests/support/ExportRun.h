// One export in a folder of its own: a configuration of the stand-in library, a command line, the
// output folder, and what the library's ledger says afterwards.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/Lines.h"
#include "tests/support/OutputTree.h"
#include "tests/support/Program.h"
#include "tests/support/ScopedEnvironmentVariable.h"
#include "tests/support/TempFolder.h"

namespace larkspan::testing {

class ExportRun {
 public:
  // Reads databases from the samples' data folder.
  ExportRun();

  // Reads them from that folder instead.
  void SetDataFolder(const std::wstring& folder) { dataFolder_ = folder; }

  // Makes a data folder of the run's own and puts a database there.
  void AddDatabase(const std::wstring& fileName, const std::string& json);

  // Sets the fault plan, a JSON text.
  void SetFaults(const std::string& json);

  // Sets another one, after a first, for the processes that start from now on.
  void ChangeFaults(const std::string& json) const;

  // Adds a line to the library's configuration.
  void AddConfiguration(const std::string& line);

  // The output folder; made by the constructor. A test may choose another one.
  const std::wstring& output() const { return output_; }
  void SetOutput(const std::wstring& folder) { output_ = folder; }

  // Leaves out the "=" argument, so that the library finds no configuration of its own.
  void LeaveOutConfiguration() { passConfiguration_ = false; }

  // Starts a copy of the program from this folder, beside the library that is there.
  void SetProgramFolder(const std::wstring& folder) { programFolder_ = folder; }

  // Copies the program into that folder, beside a library from another one, and starts it there.
  void UseProgramCopy(const std::wstring& folder, const std::wstring& libraryFolder);

  // Starts the program with files that fail by this plan, which its workers inherit.
  void UseFaultyFiles(const std::string& plan);

  // Writes the library's configuration file and gives the argument that names it.
  std::wstring ConfigurationArgument() const;

  // Writes the configuration under another name too, or in another folder.
  void WriteConfigurationTo(const std::wstring& file) const;

  // "larkspan.exe =<configuration> -p <database> -o <output>" and the arguments.
  std::wstring CommandLine(const std::wstring& database,
                           const std::vector<std::wstring>& arguments) const;
  std::wstring Executable() const;

  // Runs the program with that command line to its end.
  ProgramResult Export(const std::wstring& database, const std::vector<std::wstring>& arguments);

  // Runs it with exactly these arguments behind the program's name.
  ProgramResult RunArguments(const std::vector<std::wstring>& arguments);

  const std::wstring& folder() const { return folder_.path(); }
  OutputTree Tree() const { return ReadOutputTree(output_); }
  std::string OutputFile(const std::wstring& relativeName) const;
  bool HasOutputFile(const std::wstring& relativeName) const;
  std::string Log() const { return OutputFile(L"log.txt"); }

  // One JSON object for each runtime that ended, in order.
  Lines LedgerLines() const;

  // What a runtime that ended had still open, as "kind count" for each kind, in alphabetic order.
  Lines LeftOpen(std::size_t runtime) const;

  // What the ledger, and the library's record of misuse, hold against the run; empty when every
  // handle, lock and allocation was given back. The number of runtimes that ended must match.
  std::string LedgerFault(std::size_t runtimes) const;

 private:
  // The library takes the configuration's path in the ANSI code page, whichever that is.
  TempFolder folder_{L"larkspan-run"};
  std::wstring output_;
  std::wstring programFolder_;
  std::wstring programName_ = L"larkspan.exe";
  std::optional<ScopedEnvironmentVariable> fileFaults_;
  std::wstring dataFolder_;
  Lines configuration_;
  bool passConfiguration_ = true;
  bool hasFaultPlan_ = false;
};

}  // namespace larkspan::testing
