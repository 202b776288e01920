// Columns and values are matched by position: a column with a constant takes no value.
#include "dxl/ViewEntryElement.h"

#include <array>
#include <charconv>
#include <cstdint>

#include "base/HexText.h"
#include "dxl/ItemValue.h"
#include "notes/Summary.h"

namespace larkspan {

namespace {

using tinyxml2::XMLPrinter;

enum class EntryKind { kDocument, kPartial, kCategory, kTotal };

EntryKind KindOf(const ViewEntry& entry) {
  constexpr int kTopTwoBits = 30;
  return static_cast<EntryKind>(entry.noteId >> kTopTwoBits);
}

const char* ElementOf(EntryKind kind) {
  constexpr std::array kElements = {"document", "partial", "category", "total"};
  return kElements[static_cast<std::size_t>(kind)];
}

// The library looks for the item behind lengths that it trusts, so a summary that is damaged is
// kept from it.
bool IsConflict(const Summary& summary) {
  SummaryValue value;
  return summary.isWhole && FindSummaryValue(summary.bytes, "$Conflict", value);
}

void PushIndent(XMLPrinter& printer, std::uint16_t indent) {
  std::array<char, 6> text{};
  std::to_chars(text.data(), text.data() + text.size() - 1, indent);
  printer.PushAttribute("indent", text.data());
}

void WriteAttributes(XMLPrinter& printer, const ViewEntry& entry) {
  if (KindOf(entry) == EntryKind::kDocument)
    printer.PushAttribute("noteId", EightHexDigits(entry.noteId).c_str());
  if (entry.indent != 0) PushIndent(printer, entry.indent);
  if (IsConflict(entry.summary)) printer.PushAttribute("conflict", "true");
}

void WriteValues(XMLPrinter& printer, const ViewEntry& entry, const ViewLayout& layout) {
  const auto write = [&](Bytes value) {
    printer.OpenElement("value");
    WriteItemValue(printer, layout.numbers, value);
    printer.CloseElement();
  };
  auto value = entry.summary.values.begin();
  const auto end = entry.summary.values.end();
  for (const ColumnConstant& constant : layout.columns) {
    if (value == end && KindOf(entry) != EntryKind::kDocument) return;
    if (!constant.empty()) {
      write(constant);
    } else if (value == end) {
      return;
    } else {
      write(*value++);
    }
  }
}

}  // namespace

void WriteViewEntry(XMLPrinter& printer, const ViewEntry& entry, const ViewLayout& layout) {
  printer.OpenElement(ElementOf(KindOf(entry)));
  WriteAttributes(printer, entry);
  WriteValues(printer, entry, layout);
  printer.CloseElement();
}

}  // namespace larkspan
