#include "standin/Dxl.h"

#include <cstdio>

#include "standin/CharacterSet.h"
#include "standin/ItemValues.h"
#include "standin/NoteReader.h"
#include "standin/Times.h"
#include "standin/XmlText.h"

namespace larkspan::standin {

namespace {

constexpr char kDxlVersion[] = "12.0";

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=" + XmlAttribute(value);
}

std::string Element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string Hexadecimal(unsigned value) {
  char text[16];
  std::snprintf(text, sizeof text, "%x", value);
  return text;
}

std::string ReplicaIdText(const notes_api::TIMEDATE& replicaId) {
  char text[24];
  std::snprintf(text, sizeof text, "%08X%08X", static_cast<unsigned>(replicaId.innards[1]),
                static_cast<unsigned>(replicaId.innards[0]));
  return text;
}

std::string NumberText(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", number);
  return text;
}

std::string TimeElement(const notes_api::TIMEDATE& time) {
  return Element("datetime", DxlTimeText(time));
}

std::string Head(const Exporter& exporter, const std::string& root) {
  return "<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE " + root + ">\n<!-- " +
         XmlComment(exporter.Description()) + " -->\n";
}

std::string RootAttributes(const DatabaseProperties& database) {
  return Attribute("xmlns", notes_api::kDxlNamespace) + Attribute("version", kDxlVersion) +
         Attribute("replicaid", ReplicaIdText(database.replicaInfo.replicaId));
}

std::string NoteInfo(const Note& note) {
  const std::string attributes = Attribute("noteid", Hexadecimal(note.id)) +
                                 Attribute("unid", UniversalIdText(note.originatorId)) +
                                 Attribute("sequence", std::to_string(note.originatorId.sequence));
  return "<noteinfo" + attributes + ">\n" + Element("created", TimeElement(note.created)) + "\n" +
         Element("modified", TimeElement(note.modified)) + "</noteinfo>\n";
}

std::string NotesText(const std::string& text) { return XmlText(NotesToUtf8(text)); }

std::string TextList(const Bytes& value) {
  std::string content;
  for (const std::string& text : ReadTextList(value)) content += Element("text", NotesText(text));
  return Element("textlist", content);
}

std::string Numbers(const Bytes& value) {
  std::string content;
  for (const double number : ReadNumbers(value)) content += Element("number", NumberText(number));
  return content;
}

std::string Times(const Bytes& value) {
  std::string content;
  for (const notes_api::TIMEDATE& time : ReadTimes(value)) content += TimeElement(time);
  return content;
}

std::string RawData(notes_api::WORD type, const Bytes& bytes) {
  return "<rawdata" + Attribute("type", Hexadecimal(type)) + ">\n" + Base64(bytes) + "</rawdata>";
}

Bytes Data(const Bytes& value, std::size_t offset, std::size_t length) {
  const auto start = value.begin() + static_cast<std::ptrdiff_t>(offset);
  return {start, start + static_cast<std::ptrdiff_t>(length)};
}

std::string RichTextRecordDxl(const Exporter& exporter, notes_api::WORD type, const Bytes& data) {
  if (type == kRecordPicture && exporter.IsOn(kPropertyOmitPictures)) {
    return Element("paragraph", exporter.pictureText);
  }
  if (type == kRecordPicture) return Element("paragraph", Element("picture", "\n" + Base64(data)));
  if (type == kRecordText) return Element("paragraph", NotesText({data.begin(), data.end()}));
  return "<record" + Attribute("type", std::to_string(static_cast<std::int16_t>(type))) + ">\n" +
         Base64(data) + "</record>";
}

std::string RichText(const Exporter& exporter, const Bytes& value) {
  std::string content = "\n";
  for (const RecordSpan& record : ReadRecords(value)) {
    const Bytes data =
        Data(value, record.offset + kRecordHeadSize, record.length - kRecordHeadSize);
    content += RichTextRecordDxl(exporter, record.type, data) + "\n";
  }
  return Element("richtext", content);
}

std::string ValueDxl(const Exporter& exporter, notes_api::WORD type, const Bytes& value) {
  switch (type) {
    case notes_api::kTypeText:
      return Element("text", NotesText(ReadText(value)));
    case notes_api::kTypeFormula:
      return Element("formula", NotesText(ReadText(value)));
    case notes_api::kTypeTextList:
      return TextList(value);
    case notes_api::kTypeNumber:
      return Numbers(value);
    case notes_api::kTypeNumberRange:
      return Element("numberlist", Numbers(value));
    case notes_api::kTypeTime:
      return Times(value);
    case notes_api::kTypeTimeRange:
      return Element("datetimelist", Times(value));
    case notes_api::kTypeComposite:
      return RichText(exporter, value);
    default:
      return RawData(type, Data(value, kTypeWordSize, value.size() - kTypeWordSize));
  }
}

std::string ItemDxl(const Exporter& exporter, const OpenNote& note, const Item& item) {
  const bool isHidden = note.IsHidden(item);
  const Bytes value = note.VisibleValue(item);
  const bool isRaw = isHidden || exporter.IsOn(kPropertyRaw);
  std::string start = "<item" + Attribute("name", NotesToUtf8(item.name));
  if (item.isSealed) start += Attribute("sealed", "true");
  if (isHidden) start += Attribute("encrypted", "true");
  const Bytes data = Data(value, kTypeWordSize, value.size() - kTypeWordSize);
  return start + ">" +
         (isRaw ? RawData(item.type(), data) : ValueDxl(exporter, item.type(), value)) +
         "</item>\n";
}

}  // namespace

std::string NoteDxl(const Exporter& exporter, const DatabaseProperties& database,
                    const OpenNote& note) {
  const std::string root = exporter.IsOn(kPropertyRaw) ? "note" : note.note.element;
  std::string dxl = Head(exporter, root) + "<" + root + RootAttributes(database);
  if (root == "note") dxl += Attribute("class", Hexadecimal(note.note.noteClass));
  dxl += ">\n" + NoteInfo(note.note);
  for (const auto& item : note.items) dxl += ItemDxl(exporter, note, item->item);
  return dxl + "</" + root + ">\n";
}

std::string AclDxl(const Exporter& exporter, const DatabaseProperties& database) {
  std::string dxl = Head(exporter, "acl") + "<acl" + RootAttributes(database) + ">\n";
  for (const std::string& role : database.roles) dxl += Element("role", XmlText(role)) + "\n";
  for (const AclEntry& entry : database.acl) {
    dxl += "<entry" + Attribute("name", entry.name) + Attribute("level", entry.level) + ">";
    for (const std::string& role : entry.roles) dxl += Element("role", XmlText(role));
    dxl += "</entry>\n";
  }
  return dxl + "</acl>\n";
}

}  // namespace larkspan::standin
