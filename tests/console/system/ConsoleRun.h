// Starts the real console program as a caller would: standard input, output and error are pipes,
// and it and all that it starts belong to a job of the test's own, which tells what is left
// running and bounds it.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/ExportRun.h"
#include "tests/support/SystemProcess.h"

namespace larkspan::console {

struct ConsoleEnd {
  std::uint32_t code = 0;
  std::string output;  // As written, line ends included.
  std::string errors;
};

// What another process writes into a pipe, read on a thread of its own.
class PipeText {
 public:
  explicit PipeText(testing::UniqueSystemHandle readEnd);
  ~PipeText();
  PipeText(const PipeText&) = delete;
  PipeText& operator=(const PipeText&) = delete;

  std::string Read() const;

  // Waits for the writer's end.
  std::string ReadAll();

  // Closes the pipe; the writer is told so.
  void Close();

 private:
  void ReadUntilClosed();

  testing::UniqueSystemHandle readEnd_;
  mutable std::mutex mutex_;
  std::string text_;
  std::atomic<bool> closes_ = false;
  std::thread thread_;
};

// A started console program. What is left of it ends with the object.
class ConsoleProcess {
 public:
  ConsoleProcess(const std::wstring& executable, const std::wstring& commandLine);
  ~ConsoleProcess();
  ConsoleProcess(const ConsoleProcess&) = delete;
  ConsoleProcess& operator=(const ConsoleProcess&) = delete;

  // Standard input: lines, and its end.
  void Write(const std::string& bytes);
  void EndInput() { input_.reset(); }

  // Nobody reads standard output any more.
  void BreakOutput();

  // Waits until standard output holds the text; fails the test when it never does.
  void AwaitOutput(const std::string& text);
  std::string Output() const { return output_.Read(); }

  // As a task manager does, with the console program alone.
  void EndByForce();

  // The same for the one process that the console program has started, with this exit code.
  void EndSupervisor(UINT code);

  // The processes of the job that have not ended: the console program, and what it has started.
  std::vector<DWORD> Processes() const;
  DWORD processId() const { return process_.id; }

  // Waits until no process of the job is left; fails the test when one stays.
  void AwaitNothingLeft();

  // Waits for the end of the console program. One that runs longer than five minutes is ended, and
  // fails the test.
  ConsoleEnd WaitForEnd();

 private:
  struct Pipes;
  ConsoleProcess(const std::wstring& executable, const std::wstring& commandLine, Pipes pipes);

  testing::UniqueSystemHandle job_;
  testing::UniqueSystemHandle input_;
  PipeText output_;
  PipeText errors_;
  testing::SystemProcess process_;
};

// Waits, for five minutes at most, until the condition holds.
bool AwaitCondition(const std::function<bool()>& condition);

}  // namespace larkspan::console
