#include "standin/Generator.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "standin/ItemValues.h"
#include "standin/JsonValues.h"
#include "standin/NoteReader.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

constexpr char kDefaultFirstId[] = "00001000";
constexpr std::size_t kMinutesPerDay = 24 * 60;

std::string Filler(std::size_t index, std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += "Seed lot " + std::to_string(index) + " was sown. ";
  text.resize(bytes);
  return text;
}

notes_api::TIMEDATE TimeOf(std::size_t index) {
  const std::size_t minutes = index % (20 * 365 * kMinutesPerDay);
  return MakeTimeDate({2000, 1, 1}, static_cast<std::int64_t>(minutes) * 60 * 100);
}

Item TextItem(const std::string& name, const std::string& text) {
  return {name, 0, MakeTextValue(notes_api::kTypeText, text), false};
}

bool IsEvery(std::size_t period, std::size_t index) {
  return period != 0 && index % period == period - 1;
}

Bytes AsBytes(const std::string& text) { return {text.begin(), text.end()}; }

}  // namespace

Generator::Generator(const nlohmann::json& from, const notes_api::TIMEDATE& replicaId)
    : replicaId_(replicaId) {
  RequireKeys(from, {"documents", "firstId", "textBytes", "richTextBytes", "pictureEvery",
                     "profileEvery", "comment"});
  documents_ = from.at("documents").get<std::uint32_t>();
  firstId_ = HexadecimalValue(from.value("firstId", nlohmann::json(kDefaultFirstId)));
  textBytes_ = from.value("textBytes", 100U);
  richTextBytes_ = from.value("richTextBytes", 0U);
  pictureEvery_ = from.value("pictureEvery", 0U);
  profileEvery_ = from.value("profileEvery", 0U);
  if (documents_ > (UINT32_MAX - firstId_) / kNoteIdStep) {
    throw std::runtime_error("note IDs do not last for so many documents");
  }
}

NoteSummary Generator::SummaryAt(std::size_t index) const {
  NoteSummary summary;
  summary.id = firstId_ + static_cast<notes_api::NOTEID>(index) * kNoteIdStep;
  summary.noteClass = kClassDocument;
  summary.originatorId = DerivedOriginatorId(summary.id, replicaId_);
  summary.modified = TimeOf(index);
  summary.originatorId.sequenceTime = summary.modified;
  return summary;
}

Note Generator::NoteAt(std::size_t index) const {
  const NoteSummary summary = SummaryAt(index);
  Note note;
  note.id = summary.id;
  note.element = "document";
  note.originatorId = summary.originatorId;
  note.created = note.modified = summary.modified;
  note.items.push_back(TextItem("Form", "Seed Lot"));
  if (IsEvery(profileEvery_, index)) {
    note.items.push_back(TextItem("$Name", "$profile_" + std::to_string(index)));
  }
  note.items.push_back({"Number", 0, MakeNumberValue(static_cast<double>(index)), false});
  note.items.push_back(TextItem("Remarks", Filler(index, textBytes_)));
  std::vector<RichTextRecord> records;
  if (richTextBytes_ != 0) records.push_back({kRecordText, AsBytes(Filler(index, richTextBytes_))});
  if (IsEvery(pictureEvery_, index)) records.push_back({kRecordPicture, AsBytes("seed")});
  if (!records.empty()) note.items.push_back({"Body", 0, MakeRichTextValue(records), false});
  return note;
}

std::optional<std::size_t> Generator::IndexOf(notes_api::NOTEID id) const {
  if (id < firstId_ || (id - firstId_) % kNoteIdStep != 0) return std::nullopt;
  const std::size_t index = (id - firstId_) / kNoteIdStep;
  return index < documents_ ? std::optional(index) : std::nullopt;
}

}  // namespace larkspan::standin
