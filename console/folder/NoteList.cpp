#include "console/folder/NoteList.h"

#include <algorithm>
#include <optional>

#include "base/OutputPaths.h"
#include "console/folder/HexDigits.h"
#include "console/folder/TextLines.h"

namespace larkspan::console {

bool NoteList::Contains(std::uint32_t id) const {
  return std::binary_search(ids.begin(), ids.end(), id);
}

NoteList ReadNoteList(const std::wstring& folder) {
  NoteList list;
  list.reading = ReadTextLines(output::Join(folder, output::kIdTable), [&](const TextLine& line) {
    ++list.lines;
    const std::optional<std::uint32_t> id = ParseNoteId(line.text);
    const bool ascends = id && (list.ids.empty() || *id > list.ids.back());
    if ((!ascends || !line.isWhole) && ++list.faultyLines == 1) list.firstFaultyLine = line.number;
    if (id) list.ids.push_back(*id);
  });
  std::sort(list.ids.begin(), list.ids.end());
  list.ids.erase(std::unique(list.ids.begin(), list.ids.end()), list.ids.end());
  return list;
}

}  // namespace larkspan::console
