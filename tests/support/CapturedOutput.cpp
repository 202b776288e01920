#include "tests/support/CapturedOutput.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <cstdio>
#include <stdexcept>

#include "tests/support/FileBytes.h"

namespace larkspan {

namespace {

constexpr int kStandardOutput = 1;
constexpr std::size_t kBufferBytes = 16384;

}  // namespace

CapturedOutput::CapturedOutput() {
  std::fflush(stdout);
  const int file = _wopen(path_.c_str(), _O_CREAT | _O_WRONLY | _O_TEXT, _S_IREAD | _S_IWRITE);
  savedDescriptor_ = _dup(kStandardOutput);
  if (file < 0 || savedDescriptor_ < 0 || _dup2(file, kStandardOutput) != 0) {
    throw std::runtime_error("standard output cannot be captured");
  }
  _close(file);
  std::setvbuf(stdout, nullptr, _IOFBF, kBufferBytes);
}

CapturedOutput::~CapturedOutput() {
  std::fflush(stdout);
  _dup2(savedDescriptor_, kStandardOutput);
  _close(savedDescriptor_);
}

std::string CapturedOutput::Flushed() const { return ReadBytes(path_); }

}  // namespace larkspan
