#include "tests/xml/DatabaseValue.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

namespace larkspan {

namespace {

using nlohmann::json;

ShownValue Text(const json& value) {
  std::string text = value.get<std::string>();
  const auto isBreak = [](char character) { return character == '\0' || character == '\r'; };
  std::replace_if(text.begin(), text.end(), isBreak, kBreak);
  return {"text", text, 0, {}};
}

ShownValue Number(const json& value) { return {"number", "", value.get<double>(), {}}; }

ShownValue DateTime(const json& value) { return {"datetime", DatabaseMoment(value), 0, {}}; }

template <ShownValue (*Part)(const json&)>
ShownValue ListOf(const std::string& type, const json& values) {
  ShownValue list = {type, "", 0, {}};
  for (const json& value : values) list.parts.push_back(Part(value));
  return list;
}

ShownValue TextList(const json& values) {
  return ListOf<Text>("textlist", values.empty() ? json::array({""}) : values);
}

ShownValue DateTimeList(const json& value) {
  ShownValue list = ListOf<DateTime>("datetimelist", value.at("dateTimes"));
  for (const json& pair : value.value("pairs", json::array())) {
    list.parts.push_back(ListOf<DateTime>("datetimepair", pair));
  }
  return list;
}

// A value that the file gives byte by byte: none, or a text in which the display's mark may stand.
ShownValue FromBytes(const std::string& digits) {
  constexpr char kTextType[] = "00 05";
  constexpr char kMark[] = "7F 24 30 FF";
  if (digits.empty()) return {};
  if (!digits.starts_with(kTextType)) throw std::runtime_error("no text: " + digits);
  std::string rest = digits.substr(sizeof kTextType - 1);
  std::size_t at = 0;
  while ((at = rest.find(kMark)) != std::string::npos) rest.erase(at, sizeof kMark - 1);
  std::istringstream bytes(rest);
  std::string text;
  for (int byte = 0; bytes >> std::hex >> byte;) {
    if (byte < 0x20 || byte > 0x7E) throw std::runtime_error("no plain letter: " + digits);
    text.push_back(static_cast<char>(byte));
  }
  return Text(text);
}

}  // namespace

ShownValue DatabaseValue(const json& value) {
  if (value.contains("type") || value.contains("formula")) return {};
  if (value.contains("bytes")) return FromBytes(value.at("bytes").get<std::string>());
  if (value.contains("text")) return Text(value.at("text"));
  if (value.contains("textList")) return TextList(value.at("textList"));
  if (value.contains("number")) return Number(value.at("number"));
  if (value.contains("numbers")) return ListOf<Number>("numberlist", value.at("numbers"));
  if (value.contains("dateTime")) return DateTime(value.at("dateTime"));
  return DateTimeList(value);
}

std::string DatabaseMoment(const json& dateTime) {
  std::string moment = dateTime.get<std::string>();
  const bool hasTime = moment.ends_with('Z');
  if (hasTime && moment.find('.') == std::string::npos) moment.insert(moment.size() - 1, ".00");
  return moment;
}

}  // namespace larkspan
