// Starts the real program as a calling program would: with a command line of its own making, its
// standard output captured, and, where wanted, a pipe whose closing stops the run.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

#include "base/CommandLineText.h"
#include "tests/support/SystemProcess.h"

namespace larkspan::testing {

// The folder of the running test program, where the product and the stand-in library are too.
std::wstring ProgramFolder();

using larkspan::BuildCommandLine;

struct ProgramResult {
  std::uint32_t exitCode = 0;
  std::string standardOutput;  // As written, line ends included.
};

// A pipe for -pipe: the end that the program reads is inheritable, the other is not.
class StopPipe {
 public:
  StopPipe();

  // The value for -pipe.
  std::wstring HandleText() const;
  void Close() { writeEnd_.reset(); }
  void CloseReadEnd() { readEnd_.reset(); }
  void Write(const std::string& bytes);

  // Lets another process hold that end, and this one no more.
  void GiveWriteEndTo(HANDLE process);

 private:
  UniqueSystemHandle readEnd_;
  UniqueSystemHandle writeEnd_;
};

// A started program. It is ended by force when the object goes before its end was awaited.
class Program {
 public:
  // Starts the executable file with exactly this command line.
  Program(const std::wstring& executable, const std::wstring& commandLine);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Reads standard output until it holds the text so many times. False when the output ended first.
  bool ReadUntil(const std::string& text, int times = 1);

  // Reads standard output to its end and waits for the program's end. A program that runs longer
  // than two minutes is ended and gives exit code 0xDEAD.
  ProgramResult WaitForEnd();

  DWORD processId() const { return process_.id; }

 private:
  bool ReadMore();

  UniqueSystemHandle output_;
  SystemProcess process_;
  std::string read_;
  bool ended_ = false;
};

}  // namespace larkspan::testing
