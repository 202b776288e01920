#include "standin/Intl.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>

#include "standin/Buffers.h"
#include "standin/Strict.h"

namespace larkspan::standin {

namespace {

constexpr double kSmallestPlain = 1e-4;
constexpr double kFirstWithExponent = 1e15;

}  // namespace

notes_api::IntlSettings MakeIntlSettings(std::string_view decimalSeparator) {
  notes_api::IntlSettings settings;
  std::memset(&settings, kGarbageCharacter, sizeof settings);
  Require(decimalSeparator.size() < sizeof settings.decimalSeparator, "the separator is too long");
  WriteTextWithNul(decimalSeparator, settings.decimalSeparator, sizeof settings.decimalSeparator);
  return settings;
}

std::string_view DecimalSeparator(const notes_api::IntlSettings& settings) {
  const char* const text = settings.decimalSeparator;
  const void* const end = std::memchr(text, 0, sizeof settings.decimalSeparator);
  Require(end != nullptr, "the decimal separator does not end");
  return {text, static_cast<const char*>(end)};
}

std::string NumberText(double number, std::string_view decimalSeparator) {
  const double size = std::fabs(number);
  const bool isPlain = size == 0 || (size >= kSmallestPlain && size < kFirstWithExponent);
  char digits[40];
  const auto [end, error] =
      std::to_chars(digits, digits + sizeof digits, number,
                    isPlain ? std::chars_format::fixed : std::chars_format::scientific);
  Require(error == std::errc(), "a number has more digits than there can be");
  std::string text(digits, end);
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
    return static_cast<char>(std::toupper(character));
  });
  const std::size_t point = text.find('.');
  if (point != std::string::npos) text.replace(point, 1, decimalSeparator);
  return text;
}

}  // namespace larkspan::standin
