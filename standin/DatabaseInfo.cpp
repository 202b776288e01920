#include "standin/DatabaseInfo.h"

#include "standin/CharacterSet.h"

namespace larkspan::standin {

namespace {

// The title leaves some of the buffer to the categories.
constexpr std::size_t kTitleSize = 96;

}  // namespace

std::string MakeDatabaseInfo(const DatabaseProperties& properties) {
  const std::string title = Utf8ToNotes(properties.title);
  const std::string categories = Utf8ToNotes(properties.categories);
  std::string info(FirstWholeCharacters(title, kTitleSize - 1));
  info += '\0';
  info += FirstWholeCharacters(categories, kInfoSize - 1 - info.size());
  return info;
}

}  // namespace larkspan::standin
