#include "console/follow/ViewLosses.h"

#include <algorithm>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/folder/DxlReader.h"
#include "console/folder/HexDigits.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

bool HasFile(const std::wstring& folder, std::uint32_t view) {
  return FileExists(output::Join(folder, output::ViewFile(view)));
}

// The views among the exported design notes, in ascending order.
std::vector<std::uint32_t> ExportedViewNotes(const std::wstring& folder) {
  constexpr std::size_t kIdDigits = 8;
  std::vector<std::uint32_t> views;
  DxlReader reader;
  const std::wstring design = output::Join(folder, output::kDesignFolder);
  VisitFiles(design, L"*.dxl", [&](std::wstring_view name) {
    const std::optional<std::uint32_t> id = ParseNoteId(name.substr(0, kIdDigits));
    if (!id) return;
    const std::string root = reader.Read(design + L"\\" + std::wstring(name)).root;
    if (root == "view" || root == "folder") views.push_back(*id);
  });
  std::sort(views.begin(), views.end());
  return views;
}

bool Contains(const std::vector<std::uint32_t>& views, std::uint32_t view) {
  return std::find(views.begin(), views.end(), view) != views.end();
}

}  // namespace

std::vector<Loss> LostViews(const std::wstring& folder, const RunState& state,
                            const std::string& cause) {
  std::vector<Loss> lost;
  const std::vector<std::uint32_t>& begun = state.begunViews();
  if (!begun.empty() && !HasFile(folder, begun.back())) {
    lost.push_back({LossKind::kView, begun.back(), cause, "a worker ended while it exported it"});
  }
  for (std::size_t view = begun.size(); view < state.views().value_or(0); ++view) {
    lost.push_back({LossKind::kView, std::nullopt, "views", "the run did not reach it"});
  }
  return lost;
}

void NameUnreachedViews(const std::wstring& folder, const std::vector<std::uint32_t>& begun,
                        std::vector<Loss>& lost) {
  auto unnamed = lost.begin();
  for (const std::uint32_t view : ExportedViewNotes(folder)) {
    if (Contains(begun, view)) continue;
    unnamed = std::find_if(unnamed, lost.end(), [](const Loss& loss) { return !loss.id; });
    if (unnamed == lost.end()) return;
    unnamed->id = view;
  }
}

std::optional<Warning> WarnOfViewsWithoutFile(const std::wstring& folder,
                                              const std::vector<std::uint32_t>& begun,
                                              const std::vector<Loss>& lost) {
  constexpr std::size_t kMostNamed = 20;
  std::size_t count = 0;
  std::string names;
  for (const std::uint32_t view : begun) {
    const auto isLost = [view](const Loss& loss) { return loss.id == view; };
    if (HasFile(folder, view) || std::any_of(lost.begin(), lost.end(), isLost)) continue;
    if (++count <= kMostNamed) names += (names.empty() ? "" : ", ") + NoteIdText(view);
  }
  if (count == 0) return std::nullopt;
  if (count > kMostNamed) names += " and more";
  return Warning{"views",
                 std::to_string(count) + " of " + std::to_string(begun.size()) +
                     " views have no file, since they are hidden or cannot be read: " + names};
}

}  // namespace larkspan::console
