#include "standin/EntryBytes.h"

namespace larkspan::standin {

namespace {

constexpr std::size_t kSummaryHeadSize = 4;
constexpr std::size_t kItemHeadSize = 4;

}  // namespace

Bytes MakeSummary(const std::vector<SummaryItem>& items) {
  std::size_t length = kSummaryHeadSize;
  for (const SummaryItem& item : items) {
    length += kItemHeadSize + item.name.size() + item.value.size();
  }
  Bytes summary;
  AppendNumber(&summary, length, 2);
  AppendNumber(&summary, items.size(), 2);
  for (const SummaryItem& item : items) {
    AppendNumber(&summary, item.name.size(), 2);
    AppendNumber(&summary, item.value.size(), 2);
  }
  for (const SummaryItem& item : items) {
    AppendText(&summary, item.name);
    AppendBytes(&summary, item.value);
  }
  return summary;
}

Bytes MakeEntry(const EntryHead& head, const IndexPosition& position, const Bytes& summary) {
  Bytes entry;
  AppendNumber(&entry, head.id, 4);
  for (const notes_api::DWORD count : head.counts) AppendNumber(&entry, count, 4);
  AppendNumber(&entry, head.flag, 2);
  AppendNumber(&entry, head.indent, 2);
  AppendNumber(&entry, position.size() - 1, 2);
  AppendNumber(&entry, 0, 2);
  for (const notes_api::DWORD tumbler : position) AppendNumber(&entry, tumbler, 4);
  AppendBytes(&entry, summary);
  return entry;
}

}  // namespace larkspan::standin
