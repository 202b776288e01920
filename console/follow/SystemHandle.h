// Owns one handle of the system.
#pragma once

#include <windows.h>

#include <utility>

namespace larkspan::console {

class SystemHandle {
 public:
  SystemHandle() = default;
  explicit SystemHandle(HANDLE handle)
      : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~SystemHandle() { Reset(); }
  SystemHandle(SystemHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  SystemHandle& operator=(SystemHandle&& other) noexcept {
    Reset();
    handle_ = std::exchange(other.handle_, nullptr);
    return *this;
  }

  HANDLE get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }
  void Reset() {
    if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

// A pipe of which the process that is started next inherits one end.
struct Pipe {
  SystemHandle readEnd;
  SystemHandle writeEnd;
};

enum class InheritedEnd { kRead, kWrite };

// Empty ends when the system gives none.
inline Pipe MakePipe(InheritedEnd inherited) {
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, nullptr, 0)) return {};
  Pipe pipe{SystemHandle(readEnd), SystemHandle(writeEnd)};
  SetHandleInformation(inherited == InheritedEnd::kRead ? readEnd : writeEnd, HANDLE_FLAG_INHERIT,
                       HANDLE_FLAG_INHERIT);
  return pipe;
}

}  // namespace larkspan::console
