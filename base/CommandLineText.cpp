#include "base/CommandLineText.h"

#include <cstddef>

namespace larkspan {

namespace {

// By the rules by which the system splits it again: backslashes count before a quote alone.
std::wstring Quoted(const std::wstring& argument) {
  if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos) {
    return argument;
  }
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t unit : argument) {
    if (unit == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = unit == L'\\' ? backslashes + 1 : 0;
    quoted.push_back(unit);
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

}  // namespace

std::wstring BuildCommandLine(const std::vector<std::wstring>& arguments) {
  std::wstring line;
  for (const std::wstring& argument : arguments) {
    if (!line.empty()) line += L' ';
    line += Quoted(argument);
  }
  return line;
}

}  // namespace larkspan
