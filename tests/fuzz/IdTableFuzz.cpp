// The content of the ID table file.
#include <set>
#include <vector>

#include "base/HexNumberFile.h"
#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "export/IdTableFile.h"
#include "notes/IdTables.h"
#include "tests/fuzz/HexText.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/OutputFolder.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

using Numbers = std::vector<std::uint32_t>;

// The numbers at the front of the text, up to the first thing that is none.
struct Content {
  Numbers numbers;
  bool isAllNumbers = false;
};

Content ContentOf(std::string_view text) {
  Content content;
  while (const auto number = TakeHexNumber(text)) content.numbers.push_back(*number);
  content.isAllNumbers = IsEndOfNumbers(text);
  return content;
}

Content ReadNumbers() {
  Content read;
  const auto keep = [&](std::uint32_t number) {
    read.numbers.push_back(number);
    return true;
  };
  const HexNumberFileEnd end = ReadHexNumberFile(InOutputFolder(output::kIdTable), keep);
  read.isAllNumbers = end == HexNumberFileEnd::kEndOfFile;
  return read;
}

Numbers IdsOf(const IdTable& table) {
  Numbers ids;
  ScanIds(table, [&](std::uint32_t id) {
    ids.push_back(id);
    return true;
  });
  return ids;
}

IdTable NewTable() {
  IdTable table;
  Require(CreateIdTable(table).ok(), "a table is made");
  return table;
}

// The table of the file, and that of the file that is then written from it.
void CheckTable(const Content& content) {
  const IdTable table = NewTable();
  Require(ReadIdTableFile(table) == content.isAllNumbers, "a file of numbers alone is read");
  const std::set<std::uint32_t> ids(content.numbers.begin(), content.numbers.end());
  Require(IdsOf(table) == Numbers(ids.begin(), ids.end()), "the table has the numbers");
  Require(WriteIdTableFile(table), "the table is written");
  const IdTable again = NewTable();
  Require(ReadIdTableFile(again), "what was written is read");
  Require(IdsOf(again) == IdsOf(table), "the table comes back from its file");
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::StartLibrary();
  fuzz::UseOutputFolder();
  const std::string_view bytes = fuzz::TextIn(fuzz::InputBytes(data, size));
  if (!fuzz::HasKnownNumbers(bytes)) return 0;
  const fuzz::Content content = fuzz::ContentOf(fuzz::TextModeContent(bytes));
  fuzz::WriteOutputFile(output::kIdTable, bytes);
  const fuzz::Content read = fuzz::ReadNumbers();
  fuzz::Require(read.numbers == content.numbers, "the numbers are those of the file");
  fuzz::Require(read.isAllNumbers == content.isAllNumbers, "the end is that of the numbers");
  fuzz::CheckTable(content);
  return 0;
}
