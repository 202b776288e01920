// A library that crashes while it is loaded.
#include <windows.h>

extern "C" int DoNothing() { return 0; }

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) *static_cast<volatile int*>(nullptr) = 1;
  return TRUE;
}
