#include "app/Arguments.h"

#include <windows.h>

#include <shellapi.h>

namespace larkspan {

std::vector<std::wstring> SplitCommandLine(const std::wstring& commandLine) {
  int count = 0;
  wchar_t** texts = CommandLineToArgvW(commandLine.c_str(), &count);
  if (texts == nullptr) return {};
  std::vector<std::wstring> arguments(texts, texts + count);
  LocalFree(texts);
  return arguments;
}

}  // namespace larkspan
