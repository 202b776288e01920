#include "dxl/DateTime.h"

#include <array>
#include <cstdio>

#include "notes/Values.h"

namespace larkspan {

namespace {

// Room for seven fields of any value.
using TimeText = std::array<char, 100>;

TimeText FormatDateTime(const notes_api::TIMEDATE& time) {
  const CalendarTime at = ToUniversalTime(time);
  TimeText text{};
  if (JulianDay(time) == notes_api::kNoTimePart) {
    std::snprintf(text.data(), text.size(), "T%02d%02d%02d,%02d", at.hour, at.minute, at.second,
                  at.hundredth);
  } else if (TimeOfDay(time) == notes_api::kNoTimePart) {
    std::snprintf(text.data(), text.size(), "%04d%02d%02d", at.year, at.month, at.day);
  } else {
    std::snprintf(text.data(), text.size(), "%04d%02d%02dT%02d%02d%02d,%02d+00", at.year, at.month,
                  at.day, at.hour, at.minute, at.second, at.hundredth);
  }
  return text;
}

}  // namespace

void WriteDateTime(tinyxml2::XMLPrinter& printer, const notes_api::TIMEDATE& time) {
  printer.OpenElement("datetime");
  printer.PushText(FormatDateTime(time).data());
  printer.CloseElement();
}

}  // namespace larkspan
