// The runtime, text, memory and identity.
#include <windows.h>

#include <algorithm>
#include <cstring>

#include "bench/library/Entries.h"

namespace larkspan::bench {

WORD CopyText(const char* text, std::size_t length, char* out, std::size_t size) {
  const std::size_t copied = std::min(length, size);
  std::memcpy(out, text, copied);
  return static_cast<WORD>(copied);
}

}  // namespace larkspan::bench

namespace larkspan::notes_api {

using bench::kNotHere;
using bench::kSuccess;

namespace {

// The bench's texts are ASCII, so a character is one byte or one unit of two.
WORD Widen(const char* in, WORD length, char* out, WORD size) {
  const int count = std::min<int>(length, size / 2);
  for (int i = 0; i < count; ++i) {
    out[2 * i] = in[i];
    out[2 * i + 1] = '\0';
  }
  return static_cast<WORD>(2 * count);
}

WORD Narrow(const char* in, WORD length, char* out, WORD size) {
  const int count = std::min<int>(length / 2, size);
  for (int i = 0; i < count; ++i) out[i] = in[2 * i];
  return static_cast<WORD>(count);
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NotesInitExtended(int, char**) { return kSuccess; }

void LARKSPAN_NOTES_CALL NotesTerm() {}

WORD LARKSPAN_NOTES_CALL OSLoadString(DHANDLE, STATUS, char* out, WORD size) {
  constexpr char kText[] = "not in the bench";
  return bench::CopyText(kText, sizeof kText - 1, out, size);
}

WORD LARKSPAN_NOTES_CALL OSTranslate(WORD mode, const char* in, WORD length, char* out, WORD size) {
  if (mode == kTranslateNotesToUtf16) return Widen(in, length, out, size);
  if (mode == kTranslateUtf16ToNotes) return Narrow(in, length, out, size);
  return bench::CopyText(in, length, out, size);
}

BOOL LARKSPAN_NOTES_CALL OSGetEnvironmentString(const char*, char*, WORD) { return FALSE; }

void LARKSPAN_NOTES_CALL OSGetIntlSettings(IntlSettings* settings, WORD) { *settings = {}; }

STATUS LARKSPAN_NOTES_CALL OSMemAlloc(WORD, DWORD, DHANDLE*) { return kNotHere; }

STATUS LARKSPAN_NOTES_CALL OSMemFree(DHANDLE) { return kSuccess; }

void* LARKSPAN_NOTES_CALL OSLockObject(DHANDLE memory) {
  return memory == bench::kEntryBuffer ? bench::EntryBufferAddress() : bench::ViewFormatAddress();
}

BOOL LARKSPAN_NOTES_CALL OSUnlockObject(DHANDLE) { return TRUE; }

STATUS LARKSPAN_NOTES_CALL OSPathNetParse(const char* path, char* port, char* server, char* file) {
  *port = *server = '\0';
  file[bench::CopyText(path, std::strlen(path), file, 255)] = '\0';
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL SECKFMSwitchToIDFile(const char*, const char*, char*, WORD, DWORD,
                                                void*) {
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL SECKFMGetUserName(char*) { return kNotHere; }

STATUS LARKSPAN_NOTES_CALL SECKFMOpen(HKFC*, const char*, const char*, DWORD, DWORD, void*) {
  return kNotHere;
}

STATUS LARKSPAN_NOTES_CALL SECKFMClose(HKFC*, DWORD, void*) { return kSuccess; }

STATUS LARKSPAN_NOTES_CALL NSFNoteCipherDecrypt(DHANDLE, HKFC, DWORD, DHANDLE*, DWORD, void*) {
  return kNotHere;
}

}  // namespace larkspan::notes_api
