#include "console/doctor/EndingText.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace larkspan::console {

namespace {

struct Ending {
  std::uint32_t code;
  bool isOfLoading;
  const char* text;
};

// The system's own numbers.
constexpr std::array kEndings = {
    Ending{0xC0000005, false, "an access violation"},
    Ending{0xC00000FD, false, "no stack was left"},
    Ending{0xC0000374, false, "a damaged heap"},
    Ending{0xC0000409, false, "the C runtime gave up"},
    Ending{0xE06D7363, false, "an exception that nobody caught"},
    Ending{0xC000007B, true, "a library is damaged, or of another word size"},
    Ending{0xC0000135, true, "a library was not found"},
    Ending{0xC0000138, true, "a library lacks an entry"},
    Ending{0xC0000139, true, "a library lacks an entry"},
    Ending{0xC0000142, true, "a library did not start"},
};

const Ending* FindEnding(std::uint32_t code) {
  const auto found = std::find_if(kEndings.begin(), kEndings.end(),
                                  [code](const Ending& ending) { return ending.code == code; });
  return found == kEndings.end() ? nullptr : &*found;
}

}  // namespace

std::string EndingText(std::uint32_t exitCode) {
  constexpr std::uint32_t kSystemsOwn = 0xC0000000;
  if (exitCode < kSystemsOwn) return "exit code " + std::to_string(exitCode);
  std::array<char, 16> digits;
  std::snprintf(digits.data(), digits.size(), "%08X", static_cast<unsigned int>(exitCode));
  const Ending* const ending = FindEnding(exitCode);
  return std::string(digits.data()) + (ending == nullptr ? "" : ", " + std::string(ending->text));
}

bool IsLoadFailure(std::uint32_t exitCode) {
  const Ending* const ending = FindEnding(exitCode);
  return ending != nullptr && ending->isOfLoading;
}

}  // namespace larkspan::console
