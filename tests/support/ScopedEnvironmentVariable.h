// An environment variable of this process, and of those that it starts.
#pragma once

#include <windows.h>

#include <string>

namespace larkspan {

// Sets the variable, which was not set before, for as long as it lives.
class ScopedEnvironmentVariable {
 public:
  ScopedEnvironmentVariable(const std::wstring& name, const std::wstring& value) : name_(name) {
    SetEnvironmentVariableW(name.c_str(), value.c_str());
  }
  ~ScopedEnvironmentVariable() { SetEnvironmentVariableW(name_.c_str(), nullptr); }
  ScopedEnvironmentVariable(const ScopedEnvironmentVariable&) = delete;
  ScopedEnvironmentVariable& operator=(const ScopedEnvironmentVariable&) = delete;

 private:
  std::wstring name_;
};

}  // namespace larkspan
