#include "tests/standin/ViewReading.h"

#include <gtest/gtest.h>

#include <cstring>

namespace larkspan::standin_test {

namespace {

// Takes numbers and bytes off the front of a text. At the end there are only zeroes.
class Taker {
 public:
  explicit Taker(std::string_view bytes) : rest_(bytes) {}

  DWORD Number(std::size_t size) {
    DWORD number = 0;
    const std::string bytes = Bytes(size);
    for (std::size_t i = bytes.size(); i > 0; --i) {
      number = number << 8 | static_cast<BYTE>(bytes[i - 1]);
    }
    return number;
  }

  WORD Word() { return static_cast<WORD>(Number(2)); }

  std::string Bytes(std::size_t size) {
    EXPECT_LE(size, rest_.size());
    const std::string taken(rest_.substr(0, size));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::size_t left() const { return rest_.size(); }

 private:
  std::string_view rest_;
};

SummaryItems TakeSummary(Taker* from) {
  const std::size_t before = from->left();
  const std::size_t length = from->Word();
  std::vector<std::pair<WORD, WORD>> lengths(from->Word());
  for (auto& [name, value] : lengths) {
    name = from->Word();
    value = from->Word();
  }
  SummaryItems items;
  for (const auto& [nameLength, valueLength] : lengths) {
    const std::string name = from->Bytes(nameLength);
    items.emplace_back(name, from->Bytes(valueLength));
  }
  EXPECT_EQ(before - from->left(), length);
  return items;
}

Entry TakeEntry(Taker* from) {
  Entry entry;
  entry.id = from->Number(4);
  for (DWORD& count : entry.counts) count = from->Number(4);
  entry.flag = from->Word();
  entry.indent = from->Word();
  const std::size_t levels = std::size_t{from->Word()} + 1;
  from->Bytes(2);
  for (std::size_t i = 0; i < levels; ++i) entry.position.push_back(from->Number(4));
  entry.items = TakeSummary(from);
  return entry;
}

std::string TakeBuffer(DHANDLE buffer, WORD length) {
  const std::string bytes(static_cast<const char*>(OSLockObject(buffer)), length);
  OSUnlockObject(buffer);
  EXPECT_EQ(OSMemFree(buffer), 0);
  return bytes;
}

}  // namespace

SummaryItems SummaryIn(std::string_view bytes) {
  Taker taker(bytes);
  const SummaryItems items = TakeSummary(&taker);
  EXPECT_EQ(taker.left(), 0U);
  return items;
}

HCOLLECTION OpenCollection(DHANDLE database, NOTEID view) {
  HCOLLECTION collection = 0;
  EXPECT_EQ(NIFOpenCollection(database, database, view, 0, 0, &collection, nullptr, nullptr,
                              nullptr, nullptr),
            0);
  return collection;
}

ReadBuffer ReadEntries(HCOLLECTION collection, CollectionPosition* position, DWORD returnCount) {
  ReadBuffer read;
  DHANDLE buffer = 0;
  WORD length = 0;
  read.status = NIFReadEntries(collection, position, 1, 1, 1, returnCount, 0xC0F9, &buffer, &length,
                               &read.skipped, &read.returned, &read.signalFlags);
  read.hasBuffer = buffer != 0;
  if (read.hasBuffer) read.bytes = TakeBuffer(buffer, length);
  return read;
}

std::vector<Entry> EntriesIn(const ReadBuffer& buffer) {
  Taker taker(buffer.bytes);
  std::vector<Entry> entries;
  for (DWORD i = 0; i < buffer.returned; ++i) entries.push_back(TakeEntry(&taker));
  EXPECT_EQ(taker.left(), 0U);
  return entries;
}

std::vector<Entry> ReadView(DHANDLE database, NOTEID view) {
  const HCOLLECTION collection = OpenCollection(database, view);
  CollectionPosition position = {};
  std::vector<Entry> entries;
  ReadBuffer read;
  do {
    read = ReadEntries(collection, &position);
    EXPECT_EQ(read.status, 0);
    const std::vector<Entry> more = EntriesIn(read);
    entries.insert(entries.end(), more.begin(), more.end());
  } while (read.status == 0 && (read.signalFlags & kSignalMoreToDo) != 0);
  EXPECT_EQ(NIFCloseCollection(collection), 0);
  return entries;
}

}  // namespace larkspan::standin_test
