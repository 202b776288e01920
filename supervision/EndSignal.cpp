// The event is made before the worker and opened by it before the library's runtime runs, so that
// neither side can come too late. One of that name that is there already was made by somebody else
// and proves nothing.
#include "supervision/EndSignal.h"

#include <tlhelp32.h>

#include "base/WideFormat.h"

namespace larkspan {

namespace {

// Folders can be longer than a name of an event, so the name has their hash (FNV-1a).
std::uint64_t HashOf(const std::wstring& text) {
  std::uint64_t hash = 14695981039346656037u;
  for (const wchar_t unit : text) hash = (hash ^ unit) * 1099511628211u;
  return hash;
}

std::wstring EventName(DWORD supervisorId, const std::wstring& outputFolder,
                       std::uint32_t resumeNoteId) {
  return FormatWide(L"Local\\larkspan-end-%lu-%016I64X-%08X", supervisorId, HashOf(outputFolder),
                    resumeNoteId);
}

HANDLE CreateNewEvent(const std::wstring& name) {
  const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, name.c_str());
  if (event == nullptr || GetLastError() != ERROR_ALREADY_EXISTS) return event;
  CloseHandle(event);
  return nullptr;
}

// 0 when the system does not tell, which only a lack of memory can make: the list is the system's
// own and needs no right, this process is in it, and its parent, whose session and user it shares,
// made the event and waits. A worker without the event is taken for one that was cut off, even with
// exit code 0: a needless line is better than a lost run without one.
DWORD ParentProcessId() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE) return 0;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  BOOL found = Process32FirstW(snapshot, &entry);
  while (found && entry.th32ProcessID != GetCurrentProcessId()) {
    found = Process32NextW(snapshot, &entry);
  }
  CloseHandle(snapshot);
  return found ? entry.th32ParentProcessID : 0;
}

}  // namespace

EndSignal::EndSignal(const std::wstring& outputFolder, std::uint32_t resumeNoteId)
    : event_(CreateNewEvent(EventName(GetCurrentProcessId(), outputFolder, resumeNoteId))) {}

EndSignal::~EndSignal() {
  if (event_ != nullptr) CloseHandle(event_);
}

bool EndSignal::IsGiven() const {
  return event_ != nullptr && WaitForSingleObject(event_, 0) == WAIT_OBJECT_0;
}

EndSignalGiver::EndSignalGiver(const std::wstring& outputFolder, std::uint32_t resumeNoteId)
    : event_(OpenEventW(EVENT_MODIFY_STATE, FALSE,
                        EventName(ParentProcessId(), outputFolder, resumeNoteId).c_str())) {}

EndSignalGiver::~EndSignalGiver() {
  if (event_ != nullptr) CloseHandle(event_);
}

void EndSignalGiver::Give() const {
  if (event_ != nullptr) SetEvent(event_);
}

}  // namespace larkspan
