#include "standin/ViewFormat.h"

#include <initializer_list>

#include "standin/Strict.h"

namespace larkspan::standin {

namespace {

constexpr std::size_t kHeaderFileLength = 8;
constexpr std::size_t kColumnFileLength = 16;
constexpr notes_api::WORD kHeaderFlags = 0x0201;
constexpr notes_api::WORD kColumnWidth = 80;
constexpr notes_api::DWORD kColumnFlags = 0x0011;

void AppendWords(Bytes* out, std::initializer_list<std::size_t> words) {
  for (const std::size_t word : words) AppendNumber(out, word, 2);
}

}  // namespace

Bytes MakeViewFormat(const std::vector<ViewColumn>& columns) {
  Bytes value;
  AppendWords(&value, {kTypeViewFormat});
  AppendWords(&value, {notes_api::kViewTableFormat, kHeaderFlags, columns.size(), 0});
  for (const ViewColumn& column : columns) {
    AppendWords(&value,
                {notes_api::kViewColumnFormat, column.formula.size(), column.constant.size(),
                 column.item.size(), column.title.size(), kColumnWidth});
    AppendNumber(&value, kColumnFlags, 4);
  }
  for (const ViewColumn& column : columns) {
    AppendText(&value, column.item);
    AppendText(&value, column.title);
    AppendText(&value, column.formula);
    AppendBytes(&value, column.constant);
  }
  return value;
}

std::size_t FileLength(notes_api::WORD kind) {
  switch (kind) {
    case notes_api::kViewTableFormat:
      return kHeaderFileLength;
    case notes_api::kViewColumnFormat:
      return kColumnFileLength;
    default:
      StrictFailure("unknown kind of structure " + std::to_string(kind));
  }
}

Bytes InMemory(notes_api::WORD kind, const notes_api::BYTE* file) {
  const auto word = [file](std::size_t offset) { return WordAt(file + offset); };
  Bytes memory;
  if (kind == notes_api::kViewTableFormat) {
    AppendWords(&memory, {word(0), word(4), word(2), 0, 0, 0});
  } else {
    AppendWords(&memory, {word(0), word(10), word(6), word(8), word(2), word(4)});
    AppendNumber(&memory, NumberAt(file + 12, 4), 4);
    AppendNumber(&memory, 0, 4);
  }
  return memory;
}

}  // namespace larkspan::standin
