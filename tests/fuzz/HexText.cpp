#include "tests/fuzz/HexText.h"

#include <algorithm>
#include <limits>

namespace larkspan::fuzz {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kDigits = "0123456789abcdef";

int DigitValue(char digit) {
  const char lower = digit >= 'A' && digit <= 'F' ? static_cast<char>(digit - 'A' + 'a') : digit;
  const std::size_t value = kDigits.find(lower);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

// Removes the digits from the front.
std::uint32_t TakeDigits(std::string_view& rest) {
  constexpr unsigned long kMost = std::numeric_limits<unsigned long>::max();
  unsigned long number = 0;
  bool isTooLong = false;
  for (; !rest.empty() && DigitValue(rest[0]) >= 0; rest.remove_prefix(1)) {
    isTooLong = isTooLong || number > kMost / 16;
    number = isTooLong ? kMost : number * 16 + static_cast<unsigned long>(DigitValue(rest[0]));
  }
  return static_cast<std::uint32_t>(number);
}

bool HasPrefix(std::string_view text) { return text.starts_with("0x") || text.starts_with("0X"); }

}  // namespace

bool HasKnownNumbers(std::string_view text) { return text.find('-') == std::string_view::npos; }

std::optional<std::uint32_t> TakeHexNumber(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(kWhiteSpace), rest.size()));
  std::string_view number = rest;
  if (number.starts_with('+')) number.remove_prefix(1);
  const bool hasPrefix = HasPrefix(number);
  if (hasPrefix) number.remove_prefix(2);
  const std::string_view digits = number;
  const std::uint32_t value = TakeDigits(number);
  if (!hasPrefix && digits.size() == number.size()) return std::nullopt;
  rest = number;
  return value;
}

bool IsEndOfNumbers(std::string_view rest) { return rest.empty() || rest == "+"; }

}  // namespace larkspan::fuzz
