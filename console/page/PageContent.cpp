#include "console/page/PageContent.h"

#include <algorithm>
#include <charconv>
#include <tuple>
#include <utility>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "base/Utf8.h"

namespace larkspan::console {

namespace {

std::wstring InFolder(const std::wstring& folder, const std::wstring& name) {
  return output::Join(folder, name);
}

// Views have files like "0000014E.xml"; verify tells of all others.
std::optional<std::uint32_t> IdOfViewFile(std::wstring_view name) {
  const std::string text = WideToUtf8(name);
  constexpr std::size_t kDigits = 8;
  std::uint32_t id = 0;
  const auto [behind, error] = std::from_chars(text.data(), text.data() + text.size(), id, 16);
  if (error != std::errc() || behind != text.data() + kDigits || text.substr(kDigits) != ".xml")
    return std::nullopt;
  return id;
}

std::vector<std::uint32_t> ViewIds(const std::wstring& folder) {
  std::vector<std::uint32_t> ids;
  VisitFiles(InFolder(folder, output::kViewsFolder), L"*.*", [&](std::wstring_view name) {
    if (const std::optional<std::uint32_t> id = IdOfViewFile(name)) ids.push_back(*id);
  });
  std::sort(ids.begin(), ids.end());
  return ids;
}

std::string LowerAscii(std::string text) {
  for (char& byte : text)
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  return text;
}

auto SortingKey(const ViewOnPage& view) {
  return std::tuple(view.design.title.empty(), LowerAscii(view.design.title), view.id);
}

std::vector<ViewOnPage> NamedViews(const std::wstring& folder) {
  std::vector<ViewOnPage> views;
  for (const std::uint32_t id : ViewIds(folder)) {
    const std::wstring file = InFolder(folder, output::NoteFile(output::kDesignFolder, id));
    views.push_back({id, ReadDesignFacts(file), {}});
  }
  std::sort(views.begin(), views.end(), [](const ViewOnPage& one, const ViewOnPage& other) {
    return SortingKey(one) < SortingKey(other);
  });
  return views;
}

}  // namespace

void ReadDatabaseAndViews(const std::wstring& folder, PageContent& content) {
  content.database = ReadDatabaseFacts(InFolder(folder, output::kProperties));
  content.views = NamedViews(folder);
  std::size_t left = kShownEntriesOfAPage;
  for (ViewOnPage& view : content.views) {
    view.content = ReadViewFile(InFolder(folder, output::ViewFile(view.id)),
                                std::min(left, kShownEntriesOfAView));
    left -= view.content.first.size();
  }
}

}  // namespace larkspan::console
