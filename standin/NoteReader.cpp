#include "standin/NoteReader.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "standin/CharacterSet.h"
#include "standin/JsonValues.h"
#include "standin/Times.h"
#include "standin/ValueReader.h"
#include "standin/ViewFormat.h"
#include "standin/ViewReader.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

struct NamedClass {
  std::string_view name;
  notes_api::WORD noteClass;
};

// The name is the element that stands for the note in DXL as well.
constexpr NamedClass kClasses[] = {
    {"document", kClassDocument},
    {"form", kClassForm},
    {"subform", kClassForm},
    {"view", kClassView},
    {"folder", kClassView},
    {"about", 0x0020},
    {"using", 0x0040},
    {"icon", 0x0080},
    {"acl", 0x0100},
    {"agent", 0x0200},
    {"sharedField", 0x0400},
    {"design", 0x0800},
};

constexpr char kDefaultTime[] = "2019-03-01T08:00:00Z";

NamedClass ReadClass(const json& from) {
  if (!from.contains("class")) return kClasses[0];
  const json& value = from.at("class");
  if (value.is_number()) return {"note", static_cast<notes_api::WORD>(NumberValue(value))};
  const auto name = value.get<std::string>();
  for (const NamedClass& known : kClasses) {
    if (known.name == name) return known;
  }
  throw std::runtime_error("unknown note class \"" + name + "\"");
}

notes_api::TIMEDATE ReadTime(const json& from, const char* key, const notes_api::TIMEDATE& other) {
  return from.contains(key) ? ParseTimeDate(from.at(key).get<std::string>()) : other;
}

// What notes and stubs have in common; created is the other time where none is given.
NoteSummary ReadSummary(const json& from, const notes_api::TIMEDATE& replicaId,
                        const notes_api::TIMEDATE& created) {
  NoteSummary summary;
  summary.id = HexadecimalValue(from.at("id"));
  summary.noteClass = ReadClass(from).noteClass;
  summary.originatorId = DerivedOriginatorId(summary.id, replicaId);
  if (from.contains("unid")) {
    SetUniversalId(from.at("unid").get<std::string>(), &summary.originatorId);
  }
  summary.originatorId.sequence = from.value("sequence", 1U);
  summary.modified = ReadTime(from, "modified", created);
  summary.originatorId.sequenceTime = summary.modified;
  return summary;
}

// A view's format is an item like any other, and stands behind those of the file.
void AddView(const json& from, Note* note) {
  if (note->noteClass != kClassView) throw std::runtime_error("only views have a key \"view\"");
  note->view = ReadView(from);
  if (!from.value("format", true)) return;
  if (note->Find(kViewFormatItem) != nullptr) throw std::runtime_error("the view has two formats");
  note->items.push_back({kViewFormatItem, 0, MakeViewFormat(note->view->columns()), false});
}

}  // namespace

Item ReadItem(const json& from) {
  RequireKeys(from, {"name", "text", "textList", "number", "numbers", "dateTime", "dateTimes",
                     "formula", "richText", "type", "bytes", "flags", "sealed", "comment"});
  Item item;
  item.name = NotesTextValue(from.at("name"));
  item.flags = static_cast<notes_api::WORD>(from.value("flags", 0U));
  item.isSealed = from.value("sealed", false);
  item.value = ReadValue(from);
  return item;
}

Note ReadNote(const json& from, const notes_api::TIMEDATE& replicaId) {
  RequireKeys(from, {"id", "class", "unid", "sequence", "created", "modified", "signed",
                     "sealedFor", "items", "view", "comment"});
  Note note;
  note.created = ReadTime(from, "created", ParseTimeDate(kDefaultTime));
  const NoteSummary summary = ReadSummary(from, replicaId, note.created);
  note.id = summary.id;
  note.noteClass = summary.noteClass;
  note.element = ReadClass(from).name;
  note.originatorId = summary.originatorId;
  note.modified = summary.modified;
  note.isSigned = from.value("signed", false);
  if (from.contains("sealedFor")) note.sealedFor = NotesTextValues(from.at("sealedFor"));
  for (const json& item : from.value("items", json::array())) note.items.push_back(ReadItem(item));
  if (from.contains("view")) AddView(from.at("view"), &note);
  return note;
}

NoteSummary ReadStub(const json& from, const notes_api::TIMEDATE& replicaId) {
  RequireKeys(from, {"id", "class", "unid", "sequence", "modified", "comment"});
  NoteSummary stub = ReadSummary(from, replicaId, ParseTimeDate(kDefaultTime));
  stub.noteClass |= kDeletedBit;
  return stub;
}

notes_api::OriginatorId DerivedOriginatorId(notes_api::NOTEID id,
                                            const notes_api::TIMEDATE& replicaId) {
  constexpr notes_api::DWORD kSpread = 0x9E3779B1;
  notes_api::OriginatorId originatorId = {};
  originatorId.file[0] = replicaId.innards[0];
  originatorId.file[1] = replicaId.innards[1];
  originatorId.note[1] = id * kSpread;
  originatorId.note[0] = id;
  originatorId.sequence = 1;
  return originatorId;
}

}  // namespace larkspan::standin
