// The library trusts the lengths of the summary that it is given, so callers hand over only what is
// whole.
#include "notes/Summary.h"

namespace larkspan {

namespace {

bool Find(const void* summary, const char* name, SummaryValue& value) {
  auto* table = static_cast<notes_api::ItemTable*>(const_cast<void*>(summary));
  void* bytes = nullptr;
  notes_api::WORD length = 0;
  value = {};
  if (notes_api::NSFLocateSummaryValue(table, name, &bytes, &length, &value.type) == 0)
    return false;
  value.bytes = Bytes(static_cast<const std::byte*>(bytes), length);
  return true;
}

}  // namespace

bool FindSummaryValue(const notes_api::ItemTable& summary, const char* name, SummaryValue& value) {
  return Find(&summary, name, value);
}

bool FindSummaryValue(Bytes summary, const char* name, SummaryValue& value) {
  return Find(summary.data(), name, value);
}

}  // namespace larkspan
