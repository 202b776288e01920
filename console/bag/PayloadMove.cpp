// An export has a folder data\ of its own, so its entries are gathered in data.new\ first, each by
// one rename within the volume: it is here or there, never half. outcome.json goes last, so that
// until then the folder itself says that its export is finished. When nothing of the export is left
// beside it, data.new\ gets the name data\.
//
// A folder with an entry in data.new\ is therefore one whose move was begun, and one without
// data.new\ whose records lie in data\ is one whose move was ended.
#include "console/bag/PayloadMove.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "console/account/Outcome.h"
#include "console/bag/Bag.h"
#include "console/bag/BagInfo.h"
#include "console/bag/BagPath.h"
#include "console/bag/Declaration.h"
#include "console/bag/Manifest.h"
#include "console/folder/HexDigits.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct Entry {
  std::wstring name;
  int turn = 0;  // Lower ones are moved first.
};

bool IsName(std::wstring_view name, std::wstring_view known) {
  return CompareStringOrdinal(name.data(), static_cast<int>(name.size()), known.data(),
                              static_cast<int>(known.size()), TRUE) == CSTR_EQUAL;
}

// Of "\log.txt".
bool IsEntry(std::wstring_view name, std::wstring_view known) {
  return IsName(name, known.substr(1));
}

// The records by which a folder is known as that of an export, in the order of their turns.
constexpr std::array kRecords = {output::kIdTable, output::kAudit, kOutcomeFile};

// No value for what belongs to no export.
std::optional<int> TurnOf(std::wstring_view name, bool isFolder) {
  constexpr std::array kFiles = {output::kAcl, output::kProperties, output::kUnidIndex,
                                 output::kLog};
  const auto is = [&](const wchar_t* known) { return IsEntry(name, known); };
  if (isFolder) {
    const bool isKnown = std::any_of(output::kSubfolders.begin(), output::kSubfolders.end(), is);
    return isKnown ? std::optional(0) : std::nullopt;
  }
  if (std::any_of(kFiles.begin(), kFiles.end(), is)) return 1;
  if (is(output::StageOf(kOutcomeFile).c_str())) return 1;
  for (std::size_t i = 0; i < kRecords.size(); ++i)
    if (is(kRecords[i])) return static_cast<int>(i) + 2;
  constexpr std::wstring_view kNoteEnd = L".dxl";
  const bool isNote =
      name.ends_with(kNoteEnd) && ParseNoteId(name.substr(0, name.size() - kNoteEnd.size()));
  return isNote ? std::optional(1) : std::nullopt;
}

// What a system puts into any folder that is looked at stays where it is.
bool IsOfTheSystem(std::wstring_view name) {
  return IsName(name, L"desktop.ini") || IsName(name, L"Thumbs.db");
}

struct ListingCloser {
  void operator()(HANDLE listing) const { FindClose(listing); }
};

using VisitEntry = std::function<void(const std::wstring& name, bool isFolder)>;

// Leaves out what the system puts there. False when the folder cannot be listed.
bool VisitEntries(const std::wstring& folder, const VisitEntry& visit) {
  WIN32_FIND_DATAW found;
  const HANDLE listing = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (listing == INVALID_HANDLE_VALUE) return false;
  const std::unique_ptr<void, ListingCloser> closer(listing);
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L".." || IsOfTheSystem(name)) continue;
    visit(name, (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
  } while (FindNextFileW(listing, &found));
  return true;
}

[[noreturn]] void RefuseEntry(const std::wstring& name) {
  throw SealFault("'" + WideToUtf8(name) + "' lies there, which belongs to no export.");
}

// In order of their turns. Throws for an entry that is of no export.
std::vector<Entry> EntriesOf(const std::wstring& folder) {
  std::vector<Entry> entries;
  std::wstring unknown;
  const bool isListed = VisitEntries(folder, [&](const std::wstring& name, bool isFolder) {
    if (isFolder && IsEntry(name, kPayloadStage)) return;
    const std::optional<int> turn = TurnOf(name, isFolder);
    if (turn) entries.push_back({name, *turn});
    if (!turn) unknown = name;
  });
  if (!isListed) throw SealFault("The folder cannot be listed.");
  if (!unknown.empty()) RefuseEntry(unknown);
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.turn < b.turn; });
  return entries;
}

bool Exists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool HoldsRecords(const std::wstring& folder) {
  return std::any_of(kRecords.begin(), kRecords.end(),
                     [&](const wchar_t* name) { return Exists(output::Join(folder, name)); });
}

bool HoldsSomething(const std::wstring& folder) {
  bool holds = false;
  VisitEntries(folder, [&](const std::wstring&, bool) { holds = true; });
  return holds;
}

// One that a sealing writes, or its stage.
bool IsList(std::wstring_view name) {
  constexpr std::array kLists = {kBagInfoFile, kDeclarationFile};
  const auto is = [&](const std::string& list) {
    const std::wstring known = Utf8ToWide(list);
    return IsName(name, known) || IsName(name, output::StageOf(known));
  };
  return std::any_of(kLists.begin(), kLists.end(), is) || is(ManifestName(false, kSealKind)) ||
         is(ManifestName(true, kSealKind));
}

// What lies beside the payload and belongs to no sealing; empty when nothing does.
std::wstring EntryBesidePayload(const std::wstring& folder) {
  std::wstring other;
  VisitEntries(folder, [&](const std::wstring& name, bool isFolder) {
    const bool isKnown =
        isFolder ? IsEntry(name, kPayloadFolder) || IsEntry(name, kPayloadStage) : IsList(name);
    if (!isKnown) other = name;
  });
  return other;
}

// Scanners hold files, and with them their folders, for a while.
void MoveEntry(const std::wstring& from, const std::wstring& to) {
  constexpr int kAttempts = 120;
  constexpr std::chrono::milliseconds kPause{250};
  const auto move = [&] { return file_system::Move(from, to, file_system::Earlier::kStays); };
  if (Exists(to)) throw SealFault("There is a '" + WideToUtf8(to) + "' already.");
  if (!RetryWithPause(kAttempts, kPause, move, [](int) {}))
    throw SealFault("'" + WideToUtf8(from) + "' cannot be moved; another program may hold it.");
}

}  // namespace

SealState SealStateOf(const std::wstring& folder) {
  const std::wstring path = UnlimitedPath(folder);
  if (IsBag(path)) return SealState::kSealed;
  if (HoldsSomething(path + kPayloadStage)) return SealState::kMoving;
  const bool isMoved = !HoldsRecords(path) && HoldsRecords(path + kPayloadFolder);
  return isMoved ? SealState::kMoved : SealState::kUnsealed;
}

std::string WhySealIsUnfinished(const std::wstring& folder) {
  const SealState state = SealStateOf(folder);
  if (state == SealState::kUnsealed || state == SealState::kSealed) return {};
  // A folder above several exports, one of which is called "data", is none whose move was ended.
  const std::wstring path = UnlimitedPath(folder);
  const bool isSealing = state == SealState::kMoving || EntryBesidePayload(path).empty() ||
                         Exists(path + L"\\" + Utf8ToWide(ManifestName(false, kSealKind)));
  if (!isSealing) return {};
  return "A sealing was interrupted there; call 'larkspan-console seal' again, and it goes on.";
}

void RequireKnownEntries(const std::wstring& folder) {
  EntriesOf(folder);
  if (Exists(folder + kPayloadStage)) EntriesOf(folder + kPayloadStage);
}

void RequireOnlyPayload(const std::wstring& folder) {
  const std::wstring other = EntryBesidePayload(folder);
  if (!other.empty()) RefuseEntry(other);
}

void MovePayload(const std::wstring& folder, const std::function<void()>& beforeStep) {
  const std::wstring stage = folder + kPayloadStage;
  if (!Exists(stage)) {
    beforeStep();
    if (!file_system::CreateFolder(stage)) throw SealFault("The folder cannot be written to.");
  }
  for (const Entry& entry : EntriesOf(folder)) {
    beforeStep();
    MoveEntry(folder + L"\\" + entry.name, stage + L"\\" + entry.name);
  }
  beforeStep();
  MoveEntry(stage, folder + kPayloadFolder);
}

}  // namespace larkspan::console
