// A program that is there on every machine.
#pragma once

#include <windows.h>

#include <string>

namespace larkspan {

// The path of the system's own command interpreter.
inline std::wstring CommandInterpreter() {
  wchar_t folder[MAX_PATH] = {};
  GetSystemDirectoryW(folder, MAX_PATH);
  return std::wstring(folder) + L"\\cmd.exe";
}

}  // namespace larkspan
