#include "tests/fuzz/EntryChecks.h"

#include <cstdio>
#include <string>
#include <vector>

#include "dxl/NumberSettings.h"
#include "dxl/ViewEntryElement.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/PrintedXml.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

constexpr std::size_t kHead = 4;     // Length and item count.
constexpr std::size_t kLengths = 4;  // Of an item: those of its name and its value.

constexpr const char* kElements[] = {"document", "partial", "category", "total"};

bool IsDocument(const ViewEntry& entry) { return entry.noteId >> 30 == 0; }

std::string LowerCase(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

// Calls the visitor with the name and the value of each item until one does not lie inside the
// summary. Returns whether all do.
template <typename Visit>
bool VisitItems(Bytes summary, Visit visit) {
  const std::size_t count = WordIn(summary, 2);
  std::size_t at = kHead + count * kLengths;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t nameLength = WordIn(summary, kHead + i * kLengths);
    const std::size_t valueLength = WordIn(summary, kHead + i * kLengths + 2);
    if (at + nameLength + valueLength > summary.size()) return false;
    visit(TextIn(summary.subspan(at, nameLength)), summary.subspan(at + nameLength, valueLength));
    at += nameLength + valueLength;
  }
  return at <= summary.size();
}

bool IsConflict(const Summary& summary) {
  bool isFound = false;
  const bool isWhole = VisitItems(summary.bytes, [&](std::string_view name, Bytes) {
    isFound = isFound || LowerCase(std::string(name)) == "$conflict";
  });
  return isWhole && isFound;
}

XmlAttributes ExpectedAttributes(const ViewEntry& entry) {
  XmlAttributes attributes;
  char noteId[9] = {};
  std::snprintf(noteId, sizeof noteId, "%08X", static_cast<unsigned int>(entry.noteId));
  if (IsDocument(entry)) attributes["noteId"] = noteId;
  if (entry.indent != 0) attributes["indent"] = std::to_string(entry.indent);
  if (IsConflict(entry.summary)) attributes["conflict"] = "true";
  return attributes;
}

std::vector<Bytes> ExpectedValues(const ViewEntry& entry, const ViewColumns& columns) {
  std::vector<Bytes> values;
  std::size_t used = 0;
  for (const ColumnConstant& constant : columns) {
    const bool isUsedUp = used == entry.summary.values.size();
    if (isUsedUp && (!IsDocument(entry) || constant.empty())) break;
    values.push_back(constant.empty() ? entry.summary.values[used++] : Bytes(constant));
  }
  return values;
}

void CheckEntryElement(const XmlNode& element, const ViewEntry& entry, const ViewColumns& columns) {
  Require(element.name == kElements[entry.noteId >> 30], "the element is that of the entry's kind");
  Require(element.attributes == ExpectedAttributes(entry), "the attributes are the entry's");
  const std::vector<XmlNode> values = ChildElements(element);
  const std::vector<Bytes> expected = ExpectedValues(entry, columns);
  Require(values.size() == expected.size(), "each column has its value");
  for (std::size_t i = 0; i < values.size(); ++i) {
    Require(values[i].name == "value", "values stand in elements of their own");
    CheckItemValue(values[i], expected[i]);
  }
}

}  // namespace

void CheckSummary(const Summary& summary, Bytes inside) {
  Require(IsInside(summary.bytes, inside), "the summary is inside the bytes");
  Require(summary.bytes.size() == WordIn(summary.bytes, 0), "the summary has its length");
  std::size_t given = 0;
  const bool isWhole = VisitItems(summary.bytes, [&](std::string_view, Bytes value) {
    Require(given < summary.values.size(), "every value inside the summary is given");
    const Bytes read = summary.values[given++];
    Require(read.data() == value.data() && read.size() == value.size(), "a value is in its place");
  });
  Require(given == summary.values.size(), "no value outside the summary is given");
  Require(isWhole == summary.isWhole, "a summary is whole when all its items are");
}

void CheckWrittenEntry(const ViewEntry& entry, const ViewColumns& columns) {
  CheckPrinted(
      [&](tinyxml2::XMLPrinter& printer) {
        WriteViewEntry(printer, entry, {columns, GetNumberSettings()});
      },
      [&](const XmlNode& printed) {
        const std::vector<XmlNode> entries = ChildElements(printed);
        Require(entries.size() == 1, "an entry is one element");
        CheckEntryElement(entries[0], entry, columns);
      });
}

}  // namespace larkspan::fuzz
