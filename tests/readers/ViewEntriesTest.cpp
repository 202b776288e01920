#include "dxl/ViewEntries.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/readers/EntryBytes.h"
#include "tests/readers/ReaderTest.h"
#include "tests/support/ByteBuilder.h"

namespace larkspan {

namespace {

ExactBytes Copy(Bytes bytes) { return ExactBytes(bytes.begin(), bytes.end()); }

bool Read(const ExactBytes& bytes, ViewEntry& entry) {
  ByteReader reader{Bytes(bytes)};
  return ReadViewEntry(reader, entry);
}

// An entry with a summary that is given byte by byte. The bytes must outlive the entry.
bool ReadWithSummary(const ExactBytes& summary, ExactBytes& bytes, ViewEntry& entry) {
  bytes = ByteBuilder().Append(EntryHead(0x8FA, 0, 0)).Append(summary).Build();
  return Read(bytes, entry);
}

TEST(ViewEntriesTest, EntryHasItsIdIndentAndValues) {
  const ExactBytes bytes =
      EntryBytes(0x8FA, 2, {{"Plant", TextValue("Iris")}, {"Kind", TextValue("")}});
  ViewEntry entry;
  ASSERT_TRUE(Read(bytes, entry));
  EXPECT_EQ(entry.noteId, 0x8FAU);
  EXPECT_EQ(entry.indent, 2);
  ASSERT_EQ(entry.summary.values.size(), 2U);
  EXPECT_EQ(Copy(entry.summary.values[0]), TextValue("Iris"));
  EXPECT_EQ(Copy(entry.summary.values[1]), TextValue(""));
  EXPECT_TRUE(entry.summary.isWhole);
}

// One entry after another is read into the same place.
TEST(ViewEntriesTest, NothingOfTheEntryBeforeIsLeft) {
  const ExactBytes full = EntryBytes(0x8FA, 2, {{"Plant", TextValue("Iris")}});
  const ExactBytes bare = EntryBytes(0x8FE, 0, {});
  ViewEntry entry;
  ASSERT_TRUE(Read(full, entry));
  ASSERT_TRUE(Read(bare, entry));
  EXPECT_EQ(entry.noteId, 0x8FEU);
  EXPECT_EQ(entry.indent, 0);
  EXPECT_TRUE(entry.summary.values.empty());
  EXPECT_EQ(entry.summary.bytes.size(), 4U);
  ASSERT_FALSE(Read({}, entry));
  EXPECT_EQ(entry.noteId, 0U);
  EXPECT_TRUE(entry.summary.bytes.empty());
  EXPECT_FALSE(entry.summary.isWhole);
}

TEST(ViewEntriesTest, EntryWithoutItemsIsWhole) {
  ViewEntry entry;
  ASSERT_TRUE(Read(EntryBytes(0x8FA, 0, {}), entry));
  EXPECT_TRUE(entry.summary.values.empty());
  EXPECT_TRUE(entry.summary.isWhole);
}

TEST(ViewEntriesTest, NextEntryBeginsBehindTheSummary) {
  const ExactBytes first = EntryBytes(0x8FA, 3, {{"Plant", TextValue("Iris")}});
  ByteBuilder both;
  // Behind the last value the summary has bytes of no meaning, which its length counts.
  ExactBytes padded = first;
  padded[EntryHead(0x8FA, 3, 3).size()] =
      std::byte(SummaryBytes({{"Plant", TextValue("Iris")}}).size() + 3);
  both.Append(padded).Text("???").Append(EntryBytes(0x8FE, 0, {{"Plant", TextValue("Yew")}}));
  const ExactBytes bytes = both.Build();
  ByteReader reader{Bytes(bytes)};
  ViewEntry entry;
  ASSERT_TRUE(ReadViewEntry(reader, entry));
  EXPECT_EQ(entry.noteId, 0x8FAU);
  ASSERT_TRUE(ReadViewEntry(reader, entry));
  EXPECT_EQ(entry.noteId, 0x8FEU);
  EXPECT_EQ(Copy(entry.summary.values.at(0)), TextValue("Yew"));
  EXPECT_TRUE(reader.rest().empty());
}

TEST(ViewEntriesTest, NoTruncationIsAnEntry) {
  const ExactBytes bytes =
      EntryBytes(0x8FA, 2, {{"Plant", TextValue("Iris")}, {"Kind", TextValue("Bulb")}});
  ViewEntry entry;
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_FALSE(Read(FirstBytes(bytes, length), entry)) << length;
  }
}

TEST(ViewEntriesTest, LevelThatClaimsMoreThanIsThereIsNoEntry) {
  ExactBytes bytes = EntryBytes(0x8FA, 0, {{"Plant", TextValue("Iris")}});
  constexpr std::size_t kLevel = 4 + 12 + 2 + 2;
  bytes[kLevel] = bytes[kLevel + 1] = std::byte{0xFF};
  ViewEntry entry;
  EXPECT_FALSE(Read(bytes, entry));
}

// A summary cut at every place, with a length that says so.
TEST(ViewEntriesTest, SummaryThatEndsEarlyHasTheValuesThatAreWhole) {
  const ExactBytes summary =
      SummaryBytes({{"Plant", TextValue("Iris")}, {"Kind", TextValue("Bulb")}});
  constexpr std::size_t kData = 4 + 2 * 4;
  const std::size_t firstEnd = kData + 5 + TextValue("Iris").size();
  ViewEntry entry;
  ExactBytes bytes;
  for (std::size_t length = 4; length < summary.size(); ++length) {
    ExactBytes cut = FirstBytes(summary, length);
    cut[0] = std::byte(length);
    ASSERT_TRUE(ReadWithSummary(cut, bytes, entry)) << length;
    EXPECT_EQ(entry.summary.values.size(), length < firstEnd ? 0U : 1U) << length;
    EXPECT_FALSE(entry.summary.isWhole) << length;
  }
}

TEST(ViewEntriesTest, SummaryShorterThanItsOwnHeadIsNoEntry) {
  ViewEntry entry;
  ExactBytes bytes;
  for (unsigned int length = 0; length < 4; ++length) {
    const ExactBytes summary = ByteBuilder().Word(length).Word(0).Text("more bytes").Build();
    EXPECT_FALSE(ReadWithSummary(summary, bytes, entry)) << length;
  }
}

TEST(ViewEntriesTest, SummaryThatRunsPastItsBufferIsNoEntry) {
  ExactBytes summary = SummaryBytes({{"Plant", TextValue("Iris")}});
  summary[0] = std::byte(summary.size() + 1);
  ViewEntry entry;
  ExactBytes bytes;
  EXPECT_FALSE(ReadWithSummary(summary, bytes, entry));
}

struct Damage {
  const char* what;
  ExactBytes summary;
  std::size_t values;
};

TEST(ViewEntriesTest, LengthsThatClaimMoreThanIsThereEndTheValues) {
  const ExactBytes good = TextValue("Iris");
  const auto twoItems = [&](unsigned int name1, unsigned int value1, unsigned int name2,
                            unsigned int value2) {
    return ByteBuilder()
        .Word(4 + 8 + 2 * 11)
        .Word(2)
        .Word(name1)
        .Word(value1)
        .Word(name2)
        .Word(value2)
        .Text("Plant")
        .Append(good)
        .Text("Other")
        .Append(good)
        .Build();
  };
  const std::vector<Damage> damages = {
      {"whole", twoItems(5, 6, 5, 6), 2},
      {"first name", twoItems(0xFFFF, 6, 5, 6), 0},
      {"first value", twoItems(5, 0xFFFF, 5, 6), 0},
      {"second name", twoItems(5, 6, 0xFFFF, 6), 1},
      {"second value", twoItems(5, 6, 5, 7), 1},
      {"more names than values", ByteBuilder().Word(12).Word(3).Word(1).Word(2).Dword(0).Build(),
       0},
      {"count", ByteBuilder().Word(4).Word(0xFFFF).Build(), 0}};
  for (const Damage& damage : damages) {
    ViewEntry entry;
    ExactBytes bytes;
    ASSERT_TRUE(ReadWithSummary(damage.summary, bytes, entry)) << damage.what;
    EXPECT_EQ(entry.summary.values.size(), damage.values) << damage.what;
    EXPECT_EQ(entry.summary.isWhole, damage.values == 2) << damage.what;
  }
}

}  // namespace

}  // namespace larkspan
