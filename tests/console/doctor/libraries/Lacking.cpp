// A library that lacks a name, which its definition file leaves out.
#include <windows.h>

extern "C" int DoNothing() { return 0; }

BOOL WINAPI DllMain(HINSTANCE, DWORD, void*) { return TRUE; }
