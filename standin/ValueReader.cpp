#include "standin/ValueReader.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "standin/ItemValues.h"
#include "standin/JsonValues.h"
#include "standin/Note.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

RichTextRecord ReadRecord(const json& from) {
  RichTextRecord record;
  std::string text;
  if (from.is_string()) {
    record.type = kRecordText;
    text = NotesTextValue(from);
  } else if (from.contains("picture")) {
    RequireKeys(from, {"picture"});
    record.type = kRecordPicture;
    text = NotesTextValue(from.at("picture"));
  } else {
    RequireKeys(from, {"record", "text", "bytes"});
    record.type = static_cast<notes_api::WORD>(from.at("record").get<int>());
    if (from.contains("bytes")) record.data = BytesValue(from.at("bytes"));
    if (from.contains("text")) text = NotesTextValue(from.at("text"));
  }
  record.data.insert(record.data.end(), text.begin(), text.end());
  return record;
}

Bytes ReadRichText(const json& from) {
  std::vector<RichTextRecord> records;
  for (const json& record : from) records.push_back(ReadRecord(record));
  return MakeRichTextValue(records);
}

// Types that have a key of their own must use it, so that every value of such a type is well made.
Bytes ReadRawValue(const json& from) {
  const auto type = static_cast<notes_api::WORD>(NumberValue(from.at("type")));
  for (const notes_api::WORD known :
       {notes_api::kTypeComposite, notes_api::kTypeText, notes_api::kTypeFormula,
        notes_api::kTypeTextList, notes_api::kTypeNumber, notes_api::kTypeNumberRange,
        notes_api::kTypeTime, notes_api::kTypeTimeRange}) {
    if (type == known) throw std::runtime_error("this type has a key of its own");
  }
  if (from.contains("text")) return MakeTextValue(type, NotesTextValue(from.at("text")));
  return MakeRawValue(type, from.contains("bytes") ? BytesValue(from.at("bytes")) : Bytes());
}

notes_api::TIMEDATE ReadTime(const json& from) { return ParseTimeDate(from.get<std::string>()); }

std::vector<notes_api::TIMEDATE> ReadTimeList(const json& from) {
  std::vector<notes_api::TIMEDATE> times;
  for (const json& time : from) times.push_back(ReadTime(time));
  return times;
}

Bytes ReadNumbersWithPairs(const json& from) {
  std::vector<NumberRange> pairs;
  for (const json& pair : from.at("pairs")) {
    pairs.emplace_back(pair.at(0).get<double>(), pair.at(1).get<double>());
  }
  return MakeNumberListValue(from.at("numbers").get<std::vector<double>>(), pairs);
}

Bytes ReadTimesWithPairs(const json& from) {
  std::vector<TimeRange> pairs;
  for (const json& pair : from.at("pairs")) {
    pairs.emplace_back(ReadTime(pair.at(0)), ReadTime(pair.at(1)));
  }
  return MakeTimeListValue(ReadTimeList(from.at("dateTimes")), pairs);
}

}  // namespace

Bytes ReadValue(const json& from) {
  if (from.contains("type")) return ReadRawValue(from);
  if (from.contains("text")) {
    return MakeTextValue(notes_api::kTypeText, NotesTextValue(from.at("text")));
  }
  if (from.contains("formula")) {
    return MakeTextValue(notes_api::kTypeFormula, NotesTextValue(from.at("formula")));
  }
  if (from.contains("textList")) return MakeTextListValue(NotesTextValues(from.at("textList")));
  if (from.contains("number")) return MakeNumberValue(from.at("number").get<double>());
  if (from.contains("numbers")) {
    return MakeNumberListValue(from.at("numbers").get<std::vector<double>>());
  }
  if (from.contains("dateTime")) return MakeTimeValue(ReadTime(from.at("dateTime")));
  if (from.contains("dateTimes")) return MakeTimeListValue(ReadTimeList(from.at("dateTimes")));
  if (from.contains("richText")) return ReadRichText(from.at("richText"));
  throw std::runtime_error("a value is missing: " + from.dump());
}

Bytes ReadViewValue(const json& from) {
  RequireKeys(from, {"text", "textList", "number", "numbers", "dateTime", "dateTimes", "pairs",
                     "formula", "type", "bytes", "comment"});
  if (from.contains("pairs")) {
    return from.contains("numbers") ? ReadNumbersWithPairs(from) : ReadTimesWithPairs(from);
  }
  if (from.contains("bytes") && !from.contains("type")) return BytesValue(from.at("bytes"));
  return ReadValue(from);
}

}  // namespace larkspan::standin
