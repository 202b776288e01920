#include "dxl/DateTime.h"

#include <array>
#include <cstdio>

#include "notes/Values.h"

namespace larkspan {

namespace {

// Puts a date-time together. A view has so many that formatting them shows.
class TimeText {
 public:
  const char* c_str() const { return text_.data(); }

  void AddDate(const CalendarTime& at) {
    AddNumber(at.year, 4);
    AddNumber(at.month, 2);
    AddNumber(at.day, 2);
  }

  void AddTime(const CalendarTime& at) {
    Add('T');
    AddNumber(at.hour, 2);
    AddNumber(at.minute, 2);
    AddNumber(at.second, 2);
    Add(',');
    AddNumber(at.hundredth, 2);
  }

  void AddUniversalZone() {
    for (const char character : {'+', '0', '0'}) Add(character);
  }

 private:
  void Add(char character) { text_[length_++] = character; }

  // Two or four digits at least, with zeros in front.
  void AddNumber(int number, int digits) {
    const int limit = digits == 2 ? 100 : 10000;
    if (number < 0 || number >= limit) return AddAnyNumber(number, digits);
    for (int i = digits - 1; i >= 0; --i, number /= 10) {
      text_[length_ + static_cast<std::size_t>(i)] = static_cast<char>('0' + number % 10);
    }
    length_ += static_cast<std::size_t>(digits);
  }

  // The library may leave anything in a field.
  void AddAnyNumber(int number, int digits) {
    length_ += static_cast<std::size_t>(
        std::snprintf(text_.data() + length_, text_.size() - length_, "%0*d", digits, number));
  }

  // Room for seven fields of any value.
  std::array<char, 100> text_{};
  std::size_t length_ = 0;
};

TimeText FormatDateTime(const notes_api::TIMEDATE& time) {
  const CalendarTime at = ToUniversalTime(time);
  TimeText text;
  if (JulianDay(time) == notes_api::kNoTimePart) {
    text.AddTime(at);
    return text;
  }
  text.AddDate(at);
  if (TimeOfDay(time) == notes_api::kNoTimePart) return text;
  text.AddTime(at);
  text.AddUniversalZone();
  return text;
}

}  // namespace

void WriteDateTime(tinyxml2::XMLPrinter& printer, const notes_api::TIMEDATE& time) {
  printer.OpenElement("datetime");
  printer.PushText(FormatDateTime(time).c_str());
  printer.CloseElement();
}

}  // namespace larkspan
