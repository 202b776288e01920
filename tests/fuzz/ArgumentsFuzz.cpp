// The arguments of a process. Each byte of the input is a character, one past 0x7F a character
// beyond ASCII; a zero byte ends an argument.
#include <string>
#include <vector>

#include "tests/fuzz/ParsedLineCheck.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

std::vector<std::wstring> ArgumentsOf(const std::uint8_t* data, std::size_t size) {
  std::vector<std::wstring> arguments(1);
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0) {
      arguments.emplace_back();
    } else {
      arguments.back().push_back(static_cast<wchar_t>(data[i] < 0x80 ? data[i] : data[i] << 8));
    }
  }
  return arguments;
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  const std::vector<std::wstring> arguments = fuzz::ArgumentsOf(data, size);
  fuzz::CheckParsedLine(ParseCommandLine(arguments), arguments);
  return 0;
}
