// The event travels by its handle, which the worker inherits, and by a variable that names it. The
// worker takes both back before it runs the library, and nothing else can give the signal then.
#include "supervision/EndSignal.h"

#include <windows.h>

#include <array>
#include <cstdint>
#include <cwchar>
#include <string>

namespace larkspan {

namespace {

constexpr wchar_t kVariable[] = L"LARKSPAN_END_SIGNAL";

HANDLE CreateInheritableEvent() {
  SECURITY_ATTRIBUTES inheritable{sizeof(inheritable), nullptr, TRUE};
  return CreateEventW(&inheritable, TRUE, FALSE, nullptr);
}

bool PutIntoEnvironment(HANDLE event) {
  const auto number = reinterpret_cast<std::uintptr_t>(event);
  return SetEnvironmentVariableW(kVariable, std::to_wstring(number).c_str()) != 0;
}

HANDLE EventOfEnvironment() {
  std::array<wchar_t, 24> number{};  // The digits of 64 bits and a NUL.
  if (GetEnvironmentVariableW(kVariable, number.data(), number.size()) == 0) return nullptr;
  return reinterpret_cast<HANDLE>(std::wcstoull(number.data(), nullptr, 10));
}

}  // namespace

EndSignal::EndSignal() : event_(CreateInheritableEvent()) {
  if (event_ == nullptr || PutIntoEnvironment(event_)) return;
  CloseHandle(event_);
  event_ = nullptr;
}

EndSignal::~EndSignal() {
  if (event_ == nullptr) return;
  SetEnvironmentVariableW(kVariable, nullptr);
  CloseHandle(event_);
}

bool EndSignal::IsGiven() const {
  return event_ != nullptr && WaitForSingleObject(event_, 0) == WAIT_OBJECT_0;
}

EndSignalGiver::EndSignalGiver() : event_(EventOfEnvironment()) {
  SetEnvironmentVariableW(kVariable, nullptr);
  if (event_ != nullptr && !SetHandleInformation(event_, HANDLE_FLAG_INHERIT, 0)) event_ = nullptr;
}

void EndSignalGiver::Give() const {
  if (event_ != nullptr) SetEvent(event_);
}

}  // namespace larkspan
