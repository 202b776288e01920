// A library whose load never ends.
#include <windows.h>

extern "C" int DoNothing() { return 0; }

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) Sleep(INFINITE);
  return TRUE;
}
