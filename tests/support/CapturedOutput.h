// What is written to standard output, as bytes.
#pragma once

#include <string>

#include "tests/support/TempFolder.h"

namespace larkspan {

// Sends standard output into a file for as long as it lives. The stream keeps its text mode and is
// fully buffered, so that only what was flushed can be read.
class CapturedOutput {
 public:
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  // The bytes that have reached the file by now.
  std::string Flushed() const;

 private:
  TempFolder folder_;
  std::wstring path_ = folder_ / L"\\output";
  int savedDescriptor_ = -1;
};

}  // namespace larkspan
