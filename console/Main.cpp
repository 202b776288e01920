// The entry point of the program that a person, a scheduler or a script calls.
#include <windows.h>

#include <shellapi.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "console/CommandLine.h"
#include "console/text/Utf.h"

int wmain(int count, wchar_t** arguments) {
  // What it starts inherits this: a library that faults while it is loaded opens no window then.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  std::vector<std::string> texts;
  for (int i = 1; i < count; ++i) texts.push_back(larkspan::WideToUtf8(arguments[i]));
  return static_cast<int>(larkspan::console::RunCommandLine(std::move(texts)));
}
